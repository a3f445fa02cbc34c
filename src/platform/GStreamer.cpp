// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/GStreamer.h"

#include <dlfcn.h>

#include <type_traits>

std::optional<GStreamer> GStreamer::Load()
{
    void* const library = ::dlopen("libgstreamer-1.0.so.0", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) {
        return std::nullopt;
    }
    GStreamer gst;
    bool isComplete = true;
    // dlsym also finds the functions of GLib, to which the library is linked.
    const auto take = [&](auto*& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(::dlsym(library, name));
        isComplete = isComplete && function != nullptr;
    };
    take(gst.gst_init_check, "gst_init_check");
    take(gst.gst_element_factory_make, "gst_element_factory_make");
    take(gst.gst_element_get_bus, "gst_element_get_bus");
    take(gst.gst_element_set_state, "gst_element_set_state");
    take(gst.gst_object_ref_sink, "gst_object_ref_sink");
    take(gst.gst_object_unref, "gst_object_unref");
    take(gst.gst_bus_post, "gst_bus_post");
    take(gst.gst_bus_timed_pop_filtered, "gst_bus_timed_pop_filtered");
    take(gst.gst_message_new_application, "gst_message_new_application");
    take(gst.gst_mini_object_unref, "gst_mini_object_unref");
    take(gst.gst_structure_new_empty, "gst_structure_new_empty");
    take(gst.g_object_set, "g_object_set");
    take(gst.g_filename_to_uri, "g_filename_to_uri");
    take(gst.g_free, "g_free");
    return isComplete ? std::optional(gst) : std::nullopt;
}
