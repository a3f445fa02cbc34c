// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SoundPipeline.h"

#include <QDir>

#include <dshow.h>

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

namespace {

/// COM for the thread, as long as this object lives.
class Apartment final
{
public:
    Apartment()
        : m_result(CoInitializeEx(nullptr, COINIT_MULTITHREADED))
    {
    }
    ~Apartment()
    {
        if (SUCCEEDED(m_result)) {
            CoUninitialize();
        }
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    HRESULT m_result;
};

struct ReleaseObject
{
    void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface>
using ComPointer = std::unique_ptr<Interface, ReleaseObject>;

struct CloseEvent
{
    void operator()(HANDLE event) const { CloseHandle(event); }
};

template <typename Interface>
ComPointer<Interface> Create(const CLSID& kind, const IID& interfaceId)
{
    void* object = nullptr;
    CoCreateInstance(kind, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &object);
    return ComPointer<Interface>(static_cast<Interface*>(object));
}

template <typename Interface>
ComPointer<Interface> Query(IUnknown& object, const IID& interfaceId)
{
    void* found = nullptr;
    object.QueryInterface(interfaceId, &found);
    return ComPointer<Interface>(static_cast<Interface*>(found));
}

// Connects the first output of a source that the sound output takes: a file may have pictures in another.
bool ConnectOutput(IFilterGraph2& graph, IBaseFilter& source)
{
    IEnumPins* found = nullptr;
    if (FAILED(source.EnumPins(&found))) {
        return false;
    }
    const ComPointer<IEnumPins> pins(found);
    IPin* next = nullptr;
    while (pins->Next(1, &next, nullptr) == S_OK) {
        const ComPointer<IPin> pin(next);
        PIN_DIRECTION direction = PINDIR_INPUT;
        if (SUCCEEDED(pin->QueryDirection(&direction)) && direction == PINDIR_OUTPUT &&
            SUCCEEDED(graph.RenderEx(pin.get(), AM_RENDEREX_RENDERTOEXISTINGRENDERERS, nullptr))) {
            return true;
        }
    }
    return false;
}

// Connects the file to the system's sound output. The only renderer is added beforehand: RenderFile would
// open a window for the pictures of a film.
bool Connect(IFilterGraph2& graph, const QString& path)
{
    const auto output = Create<IBaseFilter>(CLSID_DSoundRender, IID_IBaseFilter);
    const std::wstring file = QDir::toNativeSeparators(path).toStdWString();
    IBaseFilter* added = nullptr;
    if (output == nullptr || FAILED(graph.AddFilter(output.get(), L"Output")) ||
        FAILED(graph.AddSourceFilter(file.c_str(), L"Source", &added))) {
        return false;
    }
    const ComPointer<IBaseFilter> source(added);
    return ConnectOutput(graph, *source);
}

/// A filter graph of DirectShow.
class Graph final : public SoundPipeline
{
public:
    /// False if the file can't be played.
    [[nodiscard]] bool Open(const QString& path)
    {
        m_graph = Create<IFilterGraph2>(CLSID_FilterGraph, IID_IFilterGraph2);
        if (m_graph == nullptr || m_wake == nullptr || !Connect(*m_graph, path)) {
            return false;
        }
        m_control = Query<IMediaControl>(*m_graph, IID_IMediaControl);
        m_events = Query<IMediaEvent>(*m_graph, IID_IMediaEvent);
        m_audio = Query<IBasicAudio>(*m_graph, IID_IBasicAudio);
        if (m_control == nullptr || m_events == nullptr || m_audio == nullptr) {
            return false;
        }
        OAEVENT event = 0;
        const HRESULT result = m_events->GetEventHandle(&event);
        m_hasEvent = reinterpret_cast<HANDLE>(event);
        return SUCCEEDED(result);
    }
    Graph() = default;
    ~Graph() override
    {
        if (m_control != nullptr) {
            m_control->Stop();
        }
    }
    Graph(const Graph&) = delete;
    Graph& operator=(const Graph&) = delete;

    void SetVolume(int volume) override
    {
        // In hundredths of a decibel.
        constexpr long kSilence = -10'000;
        m_audio->put_Volume(volume == 0 ? kSilence : std::lround(2000.0 * std::log10(volume / 100.0)));
    }
    bool Play() override { return SUCCEEDED(m_control->Run()); }
    void Wake() override { SetEvent(m_wake.get()); }
    Message WaitForMessage() override
    {
        const std::array<HANDLE, 2> handles{m_wake.get(), m_hasEvent};
        for (;;) {
            const DWORD signalled =
                WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE, INFINITE);
            if (signalled == WAIT_OBJECT_0) {
                return Message::Wake;
            }
            if (signalled != WAIT_OBJECT_0 + 1) {
                return Message::Error;
            }
            if (const std::optional<Message> message = NextMessage(); message) {
                return *message;
            }
        }
    }

private:
    // std::nullopt for an event without a meaning here.
    [[nodiscard]] std::optional<Message> NextMessage()
    {
        long code = 0;
        LONG_PTR first = 0;
        LONG_PTR second = 0;
        if (FAILED(m_events->GetEvent(&code, &first, &second, 0))) {
            return std::nullopt;
        }
        m_events->FreeEventParams(code, first, second);
        switch (code) {
        case EC_COMPLETE:
            return Message::End;
        case EC_DEVICE_LOST:
        case EC_ERRORABORT:
        case EC_SNDDEV_OUT_ERROR:
        case EC_STREAM_ERROR_STOPPED:
        case EC_USERABORT:
            return Message::Error;
        default:
            return std::nullopt;
        }
    }

    // Destroyed last.
    Apartment m_apartment;
    std::unique_ptr<void, CloseEvent> m_wake{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    ComPointer<IFilterGraph2> m_graph;
    ComPointer<IMediaControl> m_control;
    ComPointer<IMediaEvent> m_events;
    ComPointer<IBasicAudio> m_audio;
    // Belongs to the graph.
    HANDLE m_hasEvent = nullptr;
};

} // namespace

std::unique_ptr<SoundPipeline> SoundPipeline::Make(const QString& path)
{
    auto graph = std::make_unique<Graph>();
    return graph->Open(path) ? std::move(graph) : nullptr;
}
