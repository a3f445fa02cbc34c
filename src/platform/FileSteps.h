// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

class QFile;
class QFileInfo;

// The steps of reading and saving that are the same on every system.

/// The content of an open regular file; std::nullopt if it can't be read or is longer than @p limit bytes.
[[nodiscard]] std::optional<QByteArray> WholeContent(QFile& file, qint64 limit);

/// What the name of a temporary file adds to that of the file to be saved, other characters each time.
[[nodiscard]] QByteArray NewSuffix();
/// The paths of the temporary files of @p target.
[[nodiscard]] QStringList FilesBeside(const QFileInfo& target);
