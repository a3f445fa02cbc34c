// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The volume of the sounds, which the player keeps across runs, 0 to 100.
class VolumeFile final
{
public:
    /// @return 50 if there is no file, or if it holds something else
    [[nodiscard]] int Read() const;
    /// The new value is on the disk when the call returns: a delayed write would be lost if the session ends
    /// the program. After a crash the old or the new volume is there. A volume that can't be written is
    /// forgotten, nothing more.
    void Write(int volume) const;

private:
    /// In the folder in which the system keeps the state of this program.
    [[nodiscard]] static QString Path();

    QString m_path = Path();
};
