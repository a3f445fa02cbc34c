// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Playback.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <gst/gst.h>

#include <chrono>
#include <system_error>
#include <thread>

namespace {

constexpr auto kPatience = std::chrono::seconds(1);
// GST_PLAY_FLAG_AUDIO | GST_PLAY_FLAG_SOFT_VOLUME: no pictures, and a volume also for sinks without one.
constexpr unsigned kAudioAndSoftVolume = 0x12;

template <auto Release>
struct Releaser
{
    template <typename Object>
    void operator()(Object* object) const
    {
        Release(object);
    }
};

// Only regular files are opened: opening a pipe would block.
bool CanHoldSound(const QFileInfo& file)
{
    return file.isFile() && file.size() > 0;
}

} // namespace

/// A playbin for one sound: after an error a playbin may fail to play again.
class Playback::Pipeline final
{
public:
    explicit Pipeline(const QByteArray& path)
        : m_playbin(gst_element_factory_make("playbin", nullptr))
    {
        if (m_playbin == nullptr) {
            return;
        }
        gst_object_ref_sink(m_playbin);
        m_bus.reset(gst_element_get_bus(m_playbin));
        const std::unique_ptr<char, Releaser<g_free>> uri(
            g_filename_to_uri(path.constData(), nullptr, nullptr));
        g_object_set(m_playbin, "uri", uri.get(), "flags", kAudioAndSoftVolume, nullptr);
    }
    ~Pipeline()
    {
        if (m_playbin != nullptr) {
            gst_element_set_state(m_playbin, GST_STATE_NULL);
            gst_object_unref(m_playbin);
        }
    }
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;

    /// False if the plugins are not installed.
    explicit operator bool() const { return m_playbin != nullptr; }
    void SetVolume(int volume) { g_object_set(m_playbin, "volume", volume / 100.0, nullptr); }
    [[nodiscard]] bool Play()
    {
        return gst_element_set_state(m_playbin, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    }
    /// Makes WaitForMessage return, from any thread.
    void Wake()
    {
        gst_bus_post(m_bus.get(), gst_message_new_application(nullptr, gst_structure_new_empty("wake")));
    }
    [[nodiscard]] GstMessageType WaitForMessage()
    {
        const auto kinds =
            static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR | GST_MESSAGE_APPLICATION);
        const std::unique_ptr<GstMessage, Releaser<gst_message_unref>> message(
            gst_bus_timed_pop_filtered(m_bus.get(), GST_CLOCK_TIME_NONE, kinds));
        return message ? GST_MESSAGE_TYPE(message.get()) : GST_MESSAGE_ERROR;
    }

private:
    GstElement* m_playbin = nullptr;
    std::unique_ptr<GstBus, Releaser<gst_object_unref>> m_bus;
};

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
        std::thread([self = shared_from_this(), path, before = std::move(before)]() mutable {
            if (before) {
                before->WaitForEnd();
                before.reset();
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
        PlayFile(QFile::encodeName(file.absoluteFilePath()));
    }
    ReportDone();
}

void Playback::ReportDone()
{
    const std::lock_guard lock(m_mutex);
    m_isDone = true;
    m_done.notify_all();
}

void Playback::PlayFile(const QByteArray& path)
{
    if (gst_init_check(nullptr, nullptr, nullptr) == FALSE) {
        return;
    }
    Pipeline pipeline(path);
    if (!pipeline) {
        return;
    }
    UsePipeline(&pipeline);
    bool isPlaying = false;
    while (const std::optional<int> volume = WantedVolume()) {
        pipeline.SetVolume(*volume);
        isPlaying = isPlaying || pipeline.Play();
        const GstMessageType message = isPlaying ? pipeline.WaitForMessage() : GST_MESSAGE_ERROR;
        if (message == GST_MESSAGE_EOS) {
            ReportEnd();
        }
        if (message != GST_MESSAGE_APPLICATION) {
            break;
        }
    }
    UsePipeline(nullptr);
}

void Playback::UsePipeline(Pipeline* pipeline)
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
