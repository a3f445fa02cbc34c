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

/// One sound, from the path to its end, on a thread of its own. Members are called on the user-interface
/// thread and return at once.
class Playback final : public std::enable_shared_from_this<Playback>
{
public:
    /// @param receiver an object of the user-interface thread; while it lives and End has not been called,
    /// @p atEnd runs there when the media has played to its end
    Playback(QObject* receiver, std::function<void()> atEnd);
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// @param volume 0 to 100
    /// @param before the sound that this one replaces: a device that serves one sound at a time must be let
    /// go first
    void Start(const QString& path, int volume, std::shared_ptr<Playback> before);
    void SetVolume(int volume);
    /// Falls silent as soon as whatever it waits for lets go; nothing is reported any more.
    void End();
    /// Waits until the thread is done, for a second at the longest: one that hangs on a dead file system is
    /// left behind.
    void WaitForEnd();

private:
    class Pipeline;

    void Run(const QString& path);
    void PlayFile(const QByteArray& path);
    void UsePipeline(Pipeline* pipeline);
    /// Empty once the sound is to end.
    [[nodiscard]] std::optional<int> WantedVolume();
    void ReportEnd();
    void ReportDone();
    void Wake();

    std::mutex m_mutex;
    std::condition_variable m_done;
    QObject* m_receiver = nullptr;
    std::function<void()> m_atEnd;
    Pipeline* m_pipeline = nullptr;
    int m_volume = 0;
    bool m_ending = false;
    bool m_isDone = false;
};
