// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The player's volume across runs: dusk-beacon/volume in the user's state folder.
class VolumeFile final
{
public:
    /// XDG_STATE_HOME, or ~/.local/state where that is unset or relative.
    /// Source: XDG Base Directory Specification 0.8.
    VolumeFile();

    /// 0 to 100; 50 if there is no such file or it holds anything else.
    [[nodiscard]] int Read() const;
    /// The old or the new volume is there after a crash. A file that can't be written is a volume that is
    /// forgotten, nothing more.
    void Write(int volume) const;

private:
    QString m_path;
};
