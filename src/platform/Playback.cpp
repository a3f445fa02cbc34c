// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Playback.h"

#include "platform/SoundPipeline.h"

#include <QFileInfo>
#include <QMetaObject>

#include <chrono>
#include <system_error>
#include <thread>

namespace {

constexpr auto kPatience = std::chrono::seconds(1);

// Only regular files are opened: opening a pipe would block.
bool CanHoldSound(const QFileInfo& file)
{
    return file.isFile() && file.size() > 0;
}

} // namespace

Playback::Playback(QObject* receiver, std::function<void()> atEnd)
    : m_receiver(receiver)
    , m_atEnd(std::move(atEnd))
{
}

Playback::~Playback() = default;

void Playback::Start(const QString& path, int volume, std::shared_ptr<Playback> before)
{
    m_volume = volume;
    try {
        std::thread([self = shared_from_this(), path, before = std::move(before)] {
            if (before) {
                before->WaitForEnd();
            }
            self->Run(path);
        }).detach();
    } catch (const std::system_error&) {
        // Without a thread there is no sound, as with a file that can't be played.
        ReportDone();
    }
}

void Playback::Run(const QString& path)
{
    const QFileInfo file(path);
    if (!path.isEmpty() && CanHoldSound(file)) {
        PlayFile(file.absoluteFilePath());
    }
    ReportDone();
}

void Playback::ReportDone()
{
    const std::lock_guard lock(m_mutex);
    m_isDone = true;
    m_done.notify_all();
}

void Playback::PlayFile(const QString& path)
{
    const std::unique_ptr<SoundPipeline> pipeline = SoundPipeline::Make(path);
    if (pipeline == nullptr) {
        return;
    }
    UsePipeline(pipeline.get());
    bool isPlaying = false;
    while (const std::optional<int> volume = WantedVolume()) {
        pipeline->SetVolume(*volume);
        isPlaying = isPlaying || pipeline->Play();
        const SoundPipeline::Message message =
            isPlaying ? pipeline->WaitForMessage() : SoundPipeline::Message::Error;
        if (message == SoundPipeline::Message::End) {
            ReportEnd();
        }
        if (message != SoundPipeline::Message::Wake) {
            break;
        }
    }
    UsePipeline(nullptr);
}

void Playback::UsePipeline(SoundPipeline* pipeline)
{
    const std::lock_guard lock(m_mutex);
    m_pipeline = pipeline;
}

std::optional<int> Playback::WantedVolume()
{
    const std::lock_guard lock(m_mutex);
    return m_ending ? std::nullopt : std::optional(m_volume);
}

void Playback::ReportEnd()
{
    const std::lock_guard lock(m_mutex);
    if (!m_ending) {
        QMetaObject::invokeMethod(m_receiver, m_atEnd, Qt::QueuedConnection);
    }
}

void Playback::SetVolume(int volume)
{
    const std::lock_guard lock(m_mutex);
    m_volume = volume;
    Wake();
}

void Playback::End()
{
    const std::lock_guard lock(m_mutex);
    m_ending = true;
    Wake();
}

void Playback::Wake()
{
    if (m_pipeline != nullptr) {
        m_pipeline->Wake();
    }
}

void Playback::WaitForEnd()
{
    std::unique_lock lock(m_mutex);
    m_done.wait_for(lock, kPatience, [this] { return m_isDone; });
}
