// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Playback.h"

#include "platform/GStreamer.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <chrono>
#include <system_error>
#include <thread>

namespace {

constexpr auto kPatience = std::chrono::seconds(1);
// GST_PLAY_FLAG_AUDIO | GST_PLAY_FLAG_SOFT_VOLUME: no pictures, and a volume also for sinks without one.
constexpr unsigned kAudioAndSoftVolume = 0x12;

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
    Pipeline(const GStreamer& gst, const QByteArray& path)
        : m_gst(gst)
        , m_playbin(gst.gst_element_factory_make("playbin", nullptr))
    {
        if (m_playbin == nullptr) {
            return;
        }
        gst.gst_object_ref_sink(m_playbin);
        m_bus = gst.gst_element_get_bus(m_playbin);
        char* const uri = gst.g_filename_to_uri(path.constData(), nullptr, nullptr);
        gst.g_object_set(m_playbin, "uri", uri, "flags", kAudioAndSoftVolume, nullptr);
        (gst.g_free)(uri); // a macro in newer versions of GLib
    }
    ~Pipeline()
    {
        if (m_playbin != nullptr) {
            m_gst.gst_element_set_state(m_playbin, GST_STATE_NULL);
            m_gst.gst_object_unref(m_bus);
            m_gst.gst_object_unref(m_playbin);
        }
    }
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;

    /// False if the plugins are not installed.
    explicit operator bool() const { return m_playbin != nullptr; }
    void SetVolume(int volume) { m_gst.g_object_set(m_playbin, "volume", volume / 100.0, nullptr); }
    [[nodiscard]] bool Play()
    {
        return m_gst.gst_element_set_state(m_playbin, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    }
    /// Makes WaitForMessage return, from any thread.
    void Wake()
    {
        m_gst.gst_bus_post(m_bus,
                           m_gst.gst_message_new_application(nullptr, m_gst.gst_structure_new_empty("wake")));
    }
    [[nodiscard]] GstMessageType WaitForMessage()
    {
        const auto kinds =
            static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR | GST_MESSAGE_APPLICATION);
        GstMessage* const message = m_gst.gst_bus_timed_pop_filtered(m_bus, GST_CLOCK_TIME_NONE, kinds);
        if (message == nullptr) {
            return GST_MESSAGE_ERROR;
        }
        const GstMessageType kind = GST_MESSAGE_TYPE(message);
        m_gst.gst_mini_object_unref(GST_MINI_OBJECT_CAST(message));
        return kind;
    }

private:
    const GStreamer& m_gst;
    GstElement* m_playbin = nullptr;
    GstBus* m_bus = nullptr;
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
    const std::optional<GStreamer> gst = GStreamer::Load();
    if (!gst || gst->gst_init_check(nullptr, nullptr, nullptr) == FALSE) {
        return;
    }
    Pipeline pipeline(*gst, path);
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
