// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/GStreamer.h"
#include "platform/SoundPipeline.h"

#include <QFile>

namespace {

// GST_PLAY_FLAG_AUDIO | GST_PLAY_FLAG_SOFT_VOLUME: no pictures, and a volume also for sinks without one.
constexpr unsigned kAudioAndSoftVolume = 0x12;

class Playbin final : public SoundPipeline
{
public:
    /// @param playbin is destroyed with this object
    Playbin(const GStreamer& gst, GstElement* playbin, const QByteArray& path)
        : m_gst(gst)
        , m_playbin(playbin)
    {
        m_gst.gst_object_ref_sink(m_playbin);
        m_bus = m_gst.gst_element_get_bus(m_playbin);
        char* const uri = m_gst.g_filename_to_uri(path.constData(), nullptr, nullptr);
        m_gst.g_object_set(m_playbin, "uri", uri, "flags", kAudioAndSoftVolume, nullptr);
        (m_gst.g_free)(uri); // a macro in newer versions of GLib
    }
    ~Playbin() override
    {
        m_gst.gst_element_set_state(m_playbin, GST_STATE_NULL);
        m_gst.gst_object_unref(m_bus);
        m_gst.gst_object_unref(m_playbin);
    }
    Playbin(const Playbin&) = delete;
    Playbin& operator=(const Playbin&) = delete;

    void SetVolume(int volume) override { m_gst.g_object_set(m_playbin, "volume", volume / 100.0, nullptr); }
    bool Play() override
    {
        return m_gst.gst_element_set_state(m_playbin, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    }
    void Wake() override
    {
        m_gst.gst_bus_post(m_bus,
                           m_gst.gst_message_new_application(nullptr, m_gst.gst_structure_new_empty("wake")));
    }
    Message WaitForMessage() override
    {
        const auto kinds =
            static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR | GST_MESSAGE_APPLICATION);
        GstMessage* const message = m_gst.gst_bus_timed_pop_filtered(m_bus, GST_CLOCK_TIME_NONE, kinds);
        if (message == nullptr) {
            return Message::Error;
        }
        const GstMessageType kind = GST_MESSAGE_TYPE(message);
        m_gst.gst_mini_object_unref(GST_MINI_OBJECT_CAST(message));
        return kind == GST_MESSAGE_EOS           ? Message::End
               : kind == GST_MESSAGE_APPLICATION ? Message::Wake
                                                 : Message::Error;
    }

private:
    GStreamer m_gst;
    GstElement* m_playbin;
    GstBus* m_bus = nullptr;
};

} // namespace

std::unique_ptr<SoundPipeline> SoundPipeline::Make(const QString& path)
{
    const std::optional<GStreamer> gst = GStreamer::Load();
    if (!gst || gst->gst_init_check(nullptr, nullptr, nullptr) == FALSE) {
        return nullptr;
    }
    GstElement* const playbin = gst->gst_element_factory_make("playbin", nullptr);
    // The plugins may not be installed.
    return playbin == nullptr ? nullptr : std::make_unique<Playbin>(*gst, playbin, QFile::encodeName(path));
}
