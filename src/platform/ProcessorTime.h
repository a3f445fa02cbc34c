// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The processor time of the calling thread in milliseconds, from an arbitrary origin. Other threads and
/// waiting do not count.
[[nodiscard]] double ProcessorMilliseconds();
