// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A sound server of the test's own, with one sink that leads nowhere, and a recording of what it plays.
class SoundServer final
{
public:
    static constexpr int kRate = 44100;

    /// Makes this server's folder the place where sound is looked for, whether the server runs or not.
    SoundServer();
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// False if it does not come up in time.
    [[nodiscard]] bool Start();
    /// Ends the server at once, as a crash would.
    void Kill();
    /// The server hangs: it is there and answers nobody, until it is let go on.
    void Hang();
    void GoOn();

    /// Waits until a second's quarter of nothing but this tone has been recorded.
    [[nodiscard]] bool WaitForTone(double hertz);
    /// Waits until the newest quarter of a second holds no sound.
    [[nodiscard]] bool WaitForSilence();
    /// Amplitude, 0 to 1, of the tone in the newest quarter of a second.
    [[nodiscard]] double LatestAmplitude(double hertz);

private:
    void Collect();

    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_server;
    std::unique_ptr<QProcess> m_recorder;
    QByteArray m_samples;
};
