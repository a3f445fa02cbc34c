// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

/// A player without a face. Failures are its own matter: a path that can't be played brings no sound and no
/// event.
class MediaPlayer
{
public:
    /// The one play state that anyone looks at.
    static constexpr int kStopped = 1;

    MediaPlayer() = default;
    MediaPlayer(const MediaPlayer&) = delete;
    MediaPlayer& operator=(const MediaPlayer&) = delete;
    virtual ~MediaPlayer() = default;

    /// Replaces what plays and begins playback; returns at once whatever the path names.
    virtual void SetUrl(const QString& path) = 0;
    virtual void Stop() = 0;
    virtual void ClearPlaylist() = 0;
    /// 0 to 100, kept across runs by the player.
    [[nodiscard]] virtual int Volume() const = 0;
    virtual void SetVolume(int volume) = 0;
    /// @param handler called on the user-interface thread with the new state, kStopped at the end of the
    /// media and at a stop
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
