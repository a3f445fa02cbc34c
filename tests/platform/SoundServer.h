// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A private sound server with a null sink, and a recording of all that it plays.
class SoundServer final
{
public:
    static constexpr int kRate = 44100;

    /// Points the sound libraries to this server, which is not started yet.
    SoundServer();
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// False if it does not start in time.
    [[nodiscard]] bool Start();
    /// Ends the server at once, as a crash would.
    void Kill();
    /// Suspends the server, so that it answers no client until GoOn.
    void Hang();
    void GoOn();

    /// Waits until the newest quarter of a second holds only this tone.
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
