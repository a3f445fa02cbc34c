// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputParts.h"
#include "http/ProxyList.h"
#include "http/Query.h"
#include "http/RequestReader.h"
#include "support/Network.h"
#include "support/Utf8.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

using namespace beacond;
using boost::asio::ip::make_address;

namespace {

/// All that the service reads from a request.
struct Taken
{
    explicit Taken(const RequestReader& reader)
        : request(reader.Message())
        , forwardedFor(reader.ForwardedFor())
        , isHttp11(reader.IsHttp11())
        , isKeptAlive(reader.IsKeptAlive())
    {
    }
    [[nodiscard]] auto All() const
    {
        return std::tie(request.method, request.path, request.query, request.contentType, request.body,
                        forwardedFor, isHttp11, isKeptAlive);
    }
    bool operator==(const Taken& other) const { return All() == other.All(); }

    Request request;
    std::string forwardedFor;
    bool isHttp11 = false;
    bool isKeptAlive = false;
};

/// The outcome of one connection.
struct Outcome
{
    bool operator==(const Outcome&) const = default;

    std::vector<Taken> requests;
    unsigned refusal = 0; ///< the status, 0 if not refused
};

/// Reads @p bytes as a connection does, in portions of so many bytes as @p portions say in turn.
Outcome Read(std::string_view bytes, const std::vector<std::size_t>& portions)
{
    RequestReader reader;
    Outcome outcome;
    RequestReader::State state = reader.Next();
    for (std::size_t turn = 0;;) {
        if (state == RequestReader::State::Refused) {
            outcome.refusal = reader.RefusalStatus();
            return outcome;
        }
        if (state == RequestReader::State::Complete) {
            outcome.requests.emplace_back(reader);
            if (!reader.IsKeptAlive()) {
                return outcome;
            }
            state = reader.Next();
            continue;
        }
        const std::span<char> room = reader.Room();
        Demand(!room.empty(), "there is room while bytes are needed");
        const std::size_t count = std::min({portions[turn++ % portions.size()], bytes.size(), room.size()});
        if (count == 0) {
            return outcome;
        }
        std::copy_n(bytes.begin(), count, room.begin());
        bytes.remove_prefix(count);
        state = reader.Append(count);
    }
}

bool IsControl(char c)
{
    return (c >= '\0' && c < ' ') || c == '\x7F';
}

bool HasControl(std::string_view text)
{
    return std::any_of(text.begin(), text.end(), &IsControl);
}

/// The value of a parameter by a simpler reading, before its bytes become UTF-8.
std::string BytesOf(std::string_view value, Query::Plus plus)
{
    constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
    std::string bytes;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const std::size_t high = i + 2 < value.size() ? kDigits.find(value[i + 1]) : std::string_view::npos;
        const std::size_t low = i + 2 < value.size() ? kDigits.find(value[i + 2]) : std::string_view::npos;
        if (value[i] == '%' && high != std::string_view::npos && low != std::string_view::npos) {
            bytes += static_cast<char>(high % 16 * 16 + low % 16);
            i += 2;
        } else {
            bytes += plus == Query::Plus::Space && value[i] == '+' ? ' ' : value[i];
        }
    }
    return bytes;
}

void CheckQuery(std::string_view text, Query::Plus plus)
{
    const Query query(text, plus);
    std::vector<std::string_view> names;
    for (std::string_view rest = text; !rest.empty() && names.size() < Query::kMostParameters;) {
        const std::string_view parameter = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(parameter.size() + 1, rest.size()));
        if (parameter.empty()) {
            continue;
        }
        const std::string_view name = parameter.substr(0, parameter.find('='));
        names.push_back(name);
        const std::string value = query.Value(name);
        Demand(IsValidUtf8(value), "a value is UTF-8");
        Demand(!HasControl(value), "a value has no control character");
        if (std::count(names.begin(), names.end(), name) > 1) {
            continue;
        }
        std::string bytes = BytesOf(parameter.substr(std::min(name.size() + 1, parameter.size())), plus);
        if (IsValidUtf8(bytes)) {
            std::replace_if(bytes.begin(), bytes.end(), &IsControl, ' ');
            Demand(value == bytes, "a value is decoded once");
        }
    }
}

void CheckForwarded(const std::string& forwardedFor)
{
    const ProxyList proxies({"127.0.0.0/8"});
    const auto client = proxies.ClientIn(forwardedFor);
    Demand(!client || Unmapped(*client) == *client, "an IPv4 address has one form");
    Demand((client && proxies.Contains(*client)) || proxies.ClientIn("203.0.113.9," + forwardedFor) == client,
           "entries before the client do not count");
    try {
        const ProxyList list({forwardedFor});
        Demand(list.Contains(make_address(forwardedFor.substr(0, forwardedFor.find('/')))),
               "a network contains its address");
    } catch (const std::invalid_argument&) { // neither an address nor a network
    }
}

void CheckRequest(const Taken& taken)
{
    const Request& request = taken.request;
    Demand(request.path.starts_with('/'), "a path begins with a slash");
    Demand(request.path.find('?') == std::string::npos, "the first question mark ends the path");
    Demand(request.path.size() + request.query.size() < RequestReader::kHeaderLimit, "a target is bounded");
    Demand(!HasControl(request.path) && request.path.find(' ') == std::string::npos,
           "a path has neither a control character nor a space");
    Demand(!HasControl(request.query) && request.query.find(' ') == std::string::npos,
           "a query has neither a control character nor a space");
    Demand(request.body.size() <= RequestReader::kBodyLimit, "a body is bounded");
    Demand(request.body.empty() || request.method == Method::Post, "only a POST has a body");
    CheckQuery(request.query, Query::Plus::Literal);
    CheckQuery(request.body, Query::Plus::Space);
    CheckForwarded(taken.forwardedFor);
}

} // namespace

// The portions in which the bytes of a connection come: a byte for the size of each, in turn. Then these
// bytes.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    InputParts parts(data, size);
    std::vector<std::size_t> portions;
    for (const char portion : parts.Next()) {
        portions.push_back(static_cast<unsigned char>(portion) + std::size_t{1});
    }
    portions.push_back(1);
    const std::string_view bytes = parts.Rest();
    const Outcome outcome = Read(bytes, {RequestReader::kHeaderLimit});
    const Outcome other = Read(bytes, portions);
    Demand(other.requests == outcome.requests, "the same bytes in other portions are the same requests");
    // Beast treats the line of a chunk with an open quotation mark as incomplete, and counts the
    // chunk again with each portion: the request never completes, but when and how it is refused depends on
    // the portions.
    Demand(other.refusal == outcome.refusal || bytes.find('"') != std::string_view::npos,
           "a refusal is the same in other portions");
    for (const Taken& taken : outcome.requests) {
        CheckRequest(taken);
    }
    // The same bytes as a query, without the limits of a header.
    CheckQuery(bytes, Query::Plus::Literal);
    CheckQuery(bytes, Query::Plus::Space);
    CheckForwarded(std::string(bytes));
    return 0;
}
