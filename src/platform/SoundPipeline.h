// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

/// The system's player of one sound: after an error it may fail to play again. The thread that makes it also
/// uses and destroys it; its functions may block.
class SoundPipeline
{
public:
    enum class Message { End, Error, Wake };

    /// nullptr if the system has no such player.
    /// @param path absolute path of a regular file
    [[nodiscard]] static std::unique_ptr<SoundPipeline> Make(const QString& path);

    SoundPipeline() = default;
    /// Stops the sound.
    virtual ~SoundPipeline() = default;
    SoundPipeline(const SoundPipeline&) = delete;
    SoundPipeline& operator=(const SoundPipeline&) = delete;

    /// @param volume 0 to 100, linear in amplitude
    virtual void SetVolume(int volume) = 0;
    [[nodiscard]] virtual bool Play() = 0;
    /// Makes WaitForMessage return; may be called on any thread and does not block.
    virtual void Wake() = 0;
    [[nodiscard]] virtual Message WaitForMessage() = 0;
};
