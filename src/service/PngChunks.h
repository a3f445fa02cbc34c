// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// A PNG without what its picture can do without: texts, profiles, times. A reader unpacks those a
/// thousandfold before it tells as much as the size. A chunk that is cut goes too, with all behind it.
/// Source of the format: PNG, third edition, 5.3 and 11.
[[nodiscard]] QByteArray PlainPng(const QByteArray& png);

/// True if what a PNG holds of pixels unpacks to no more than @p mostBytes; those that its size has no place
/// for count too, since a reader goes through them all. A file that ends early is judged by what is there.
[[nodiscard]] bool HasModestPixels(const QByteArray& png, qint64 mostBytes);
