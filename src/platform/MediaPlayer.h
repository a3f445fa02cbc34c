// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

/// A player without a user interface. Failures are not reported: a path that can't be played makes no sound
/// and no event.
class MediaPlayer
{
public:
    /// The only play state in use.
    static constexpr int kStopped = 1;

    MediaPlayer() = default;
    MediaPlayer(const MediaPlayer&) = delete;
    MediaPlayer& operator=(const MediaPlayer&) = delete;
    virtual ~MediaPlayer() = default;

    /// Stops the current sound and starts this one; returns at once for any path.
    virtual void SetUrl(const QString& path) = 0;
    virtual void Stop() = 0;
    virtual void ClearPlaylist() = 0;
    /// 0 to 100; the player stores it across runs.
    [[nodiscard]] virtual int Volume() const = 0;
    virtual void SetVolume(int volume) = 0;
    /// @param handler called on the user-interface thread with kStopped at the end of the media and after
    /// Stop
    void SetPlayStateHandler(std::function<void(int)> handler) { m_handler = std::move(handler); }

protected:
    void CallPlayStateHandler(int state) const
    {
        if (m_handler) {
            m_handler(state);
        }
    }

private:
    std::function<void(int)> m_handler;
};
