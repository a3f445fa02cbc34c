// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class QObject;
class SoundPipeline;

/// One sound, played on its own thread. Call members on the user-interface thread; except for WaitForEnd they
/// return at once.
class Playback final : public std::enable_shared_from_this<Playback>
{
public:
    /// @param receiver object of the user-interface thread; must not be destroyed before End
    /// @param atEnd queued for @p receiver at the end of the media, unless End has been called
    Playback(QObject* receiver, std::function<void()> atEnd);
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// @param volume 0 to 100
    /// @param before the replaced sound: it must release a device that plays one sound at a time
    void Start(const QString& path, int volume, std::shared_ptr<Playback> before);
    void SetVolume(int volume);
    /// Stops the sound as soon as its thread is not blocked; nothing is reported any more.
    void End();
    /// Waits at most one second for the end of the thread: a thread blocked by a file system is abandoned.
    void WaitForEnd();

private:
    void Run(const QString& path);
    void PlayFile(const QString& path);
    void UsePipeline(SoundPipeline* pipeline);
    /// std::nullopt after End.
    [[nodiscard]] std::optional<int> WantedVolume();
    void ReportEnd();
    void ReportDone();
    void Wake();

    std::mutex m_mutex;
    std::condition_variable m_done;
    QObject* m_receiver = nullptr;
    std::function<void()> m_atEnd;
    SoundPipeline* m_pipeline = nullptr;
    int m_volume = 0;
    bool m_ending = false;
    bool m_isDone = false;
};
