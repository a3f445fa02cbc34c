// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

/// The picture in a PNG file, for example of the resources, at a pixel ratio of 1; a null picture if the file
/// can't be read. Unlike QImage it does not load the plugins of other formats first, which takes longer than
/// reading most pictures.
[[nodiscard]] QImage ReadPng(const QString& path);
