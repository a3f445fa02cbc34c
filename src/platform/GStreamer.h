// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gst/gst.h>

#include <optional>

/// The functions of GStreamer and GLib that a sound needs, by their own names. The program is not linked to
/// GStreamer, which with its libraries would add 1 MB and 1 ms to each start, and is seldom needed. The first
/// sound loads it on its own thread.
struct GStreamer
{
    /// Loads the library; it stays loaded to the end of the process. std::nullopt if it is not installed.
    /// May be called on any thread.
    [[nodiscard]] static std::optional<GStreamer> Load();

    decltype(&::gst_init_check) gst_init_check = nullptr;
    decltype(&::gst_element_factory_make) gst_element_factory_make = nullptr;
    decltype(&::gst_element_get_bus) gst_element_get_bus = nullptr;
    decltype(&::gst_element_set_state) gst_element_set_state = nullptr;
    decltype(&::gst_object_ref_sink) gst_object_ref_sink = nullptr;
    decltype(&::gst_object_unref) gst_object_unref = nullptr;
    decltype(&::gst_bus_post) gst_bus_post = nullptr;
    decltype(&::gst_bus_timed_pop_filtered) gst_bus_timed_pop_filtered = nullptr;
    decltype(&::gst_message_new_application) gst_message_new_application = nullptr;
    decltype(&::gst_mini_object_unref) gst_mini_object_unref = nullptr;
    decltype(&::gst_structure_new_empty) gst_structure_new_empty = nullptr;
    decltype(&::g_object_set) g_object_set = nullptr;
    decltype(&::g_filename_to_uri) g_filename_to_uri = nullptr;
    decltype(&::g_free) g_free = nullptr;
};
