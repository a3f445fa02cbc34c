// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSounds.h"

#include <QFile>
#include <QFileInfo>

#include <gst/gst.h>

#include <map>

bool WriteTone(const QString& path, double hertz, double seconds)
{
    static const std::map<QString, QString> kEncoders = {
        {QStringLiteral("wav"), QStringLiteral("wavenc")},
        {QStringLiteral("mp3"), QStringLiteral("lamemp3enc")},
        {QStringLiteral("ogg"), QStringLiteral("vorbisenc ! oggmux")},
        {QStringLiteral("flac"), QStringLiteral("flacenc")},
    };
    gst_init(nullptr, nullptr);
    // Buffers of a twentieth of a second.
    const QString description =
        QStringLiteral("audiotestsrc wave=sine freq=%1 volume=0.5 samplesperbuffer=2205 num-buffers=%2 ! "
                       "audio/x-raw,rate=44100,channels=1 ! audioconvert ! %3 ! filesink location=\"%4\"")
            .arg(QString::number(hertz), QString::number(qRound(seconds * 20)),
                 kEncoders.at(QFileInfo(path).suffix()), path);
    GstElement* const pipeline = gst_parse_launch(description.toUtf8().constData(), nullptr);
    if (pipeline == nullptr) {
        return false;
    }
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus* const bus = gst_element_get_bus(pipeline);
    GstMessage* const message = gst_bus_timed_pop_filtered(
        bus, 20 * GST_SECOND, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool isWritten = message != nullptr && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (message != nullptr) {
        gst_message_unref(message);
    }
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return isWritten;
}
