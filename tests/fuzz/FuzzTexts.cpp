// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Log.h"
#include "fuzz/FuzzTarget.h"
#include "http/Query.h"
#include "messages/MailAddress.h"
#include "messages/PersonalCode.h"
#include "places/Fold.h"
#include "places/Places.h"
#include "places/TypingError.h"
#include "protocol/PlaceScripts.h"
#include "server/places/SmallTables.h"
#include "support/Utf8.h"
#include "support/Xml.h"

#include <pugixml.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

using namespace beacond;

namespace {

bool IsControl(char c)
{
    return (c >= '\0' && c < ' ') || c == '\x7F';
}

/// The printable characters of ASCII in @p text.
std::string Printable(std::string text)
{
    std::erase_if(text, [](char c) { return c < ' ' || c == '\x7F'; });
    return text;
}

/// The values that pugixml finds in a reply with this one at three places, which must be equal.
std::string WrittenAndRead(const std::string& value)
{
    XmlReply reply;
    reply.Attribute("a", value);
    reply.Child().Attribute("a", value).Attribute("b", "");
    reply.Child("G1").Attribute("a", value);
    const std::size_t size = reply.Size();
    const std::string text = reply.Finish();
    Demand(text.size() == size, "a reply's size is known before its end");
    Demand(IsValidUtf8(text) &&
               std::none_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; }),
           "a reply is UTF-8 on one line");
    pugi::xml_document document;
    Demand(document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8),
           "a reply is well-formed");
    const pugi::xml_node root = document.child("root");
    const std::string read = root.attribute("a").value();
    Demand(root.child("c1").attribute("a").value() == read && root.child("G1").attribute("a").value() == read,
           "a value is read alike everywhere");
    Demand(root.child("c1").attribute("b") && root.last_child() == root.child("G1"),
           "a value stays in its place");
    return read;
}

void CheckXml(const std::string& value)
{
    const std::string read = WrittenAndRead(value);
    Demand(Printable(read) == Printable(value), "a printable character is read as it was written");
    Demand(WrittenAndRead(read) == read, "a value that XML can carry is read as it was written");
}

void CheckJson(const std::string& text)
{
    const std::string json = JsonString(text);
    Demand(IsValidUtf8(json) &&
               std::none_of(json.begin(), json.end(), [](char c) { return c >= 0 && c < ' '; }),
           "a log entry is UTF-8 on one line");
    std::size_t end = 1;
    while (end < json.size() && json[end] != '"') {
        end += json[end] == '\\' ? 2 : 1;
    }
    Demand(json.front() == '"' && end + 1 == json.size(), "a text ends at its last quotation mark");
}

void CheckTyped(const std::string& typed)
{
    if (const std::optional<std::string> digits = DigitsOfPersonalCode(typed)) {
        Demand(digits->size() == 16 && digits->find_first_not_of("0123456789") == std::string::npos,
               "a code has 16 digits");
        Demand(DigitsOfPersonalCode(*digits) == digits, "a code is read as its digits");
    }
    if (const std::optional<std::string> address = NormalisedMailAddress(typed)) {
        Demand(NormalisedMailAddress(*address) == address, "an address has one form");
        Demand(address->size() <= 254 && std::count(address->begin(), address->end(), '@') == 1 &&
                   std::none_of(address->begin(), address->end(),
                                [](char c) { return c <= ' ' || c == '\x7F'; }) &&
                   address->find_first_of("\"\\$`;|&<>()*?!#,:{}[]") == std::string::npos &&
                   !address->starts_with('-'),
               "an address is harmless in a header and a shell");
    }
}

void CheckFold(const std::string& name)
{
    const FoldedName folded = FoldName(name);
    Demand(Fold(name) == folded.text, "a name is folded one way");
    Demand(IsValidUtf8(folded.text) && std::none_of(folded.text.begin(), folded.text.end(), &IsControl),
           "a folded name is UTF-8 without control characters");
    std::size_t before = 0;
    for (const std::size_t word : folded.words) {
        Demand(word > before && word < folded.text.size(), "words follow one another within the name");
        Demand(Utf8SequenceLength(std::string_view(folded.text).substr(word)) > 0,
               "a word begins with a letter");
        before = word;
    }
    Demand(BeginsWithOneError(folded.text, folded.text), "a name begins with itself");
    if (!folded.text.empty()) {
        Demand(BeginsWithOneError(folded.text, folded.text.substr(LetterLength(folded.text))),
               "a letter may be missing");
        Demand(BeginsWithOneError(folded.text, "x" + folded.text), "a letter may be too much");
        for (const std::string& variant : VariantsOfFirstLetter(folded.text)) {
            Demand(variant.size() <= folded.text.size() + 1 && IsValidUtf8(variant), "a variant is a text");
        }
    }
}

const Places& SmallPlaces()
{
    static const Places places = [] {
        const TemporaryFolder folder;
        static_cast<void>(TablesOfEachKind().Import(folder));
        return Places(folder / "places.bin");
    }();
    return places;
}

/// A text typed into the search.
void CheckSearches(const std::string& text)
{
    constexpr std::size_t kMost = 1000;
    for (const State& state : SmallPlaces().States()) {
        Demand(SmallPlaces().Search(state.id, text, kMost).size() == SmallPlaces().Count(state.id, text),
               "a search finds the places that it counts");
    }
    for (const Match& match : SmallPlaces().ByZip(text)) {
        Demand(SmallPlaces().ByAtlasId(match.atlasId).has_value(), "a place of a code can be fetched");
    }
    static_cast<void>(SmallPlaces().ByAtlasId(text));
}

void CheckScripts(const std::string& text)
{
    constexpr std::size_t kLargestReply = 256UL * 1024;
    const Query query(text);
    const auto now = std::chrono::sys_seconds(std::chrono::seconds(1'800'000'000));
    for (const char* const name : {"getStates.pl", "getUsCanCity.pl", "getNumMatchingCities.pl",
                                   "getMatchingCities.pl", "getCityInfo.pl"}) {
        const Response response = AnswerFromPlaces(&SmallPlaces(), name, query, now);
        pugi::xml_document document;
        const bool isXml = document.load_buffer(response.body.data(), response.body.size());
        Demand(isXml == (response.status == 200), "a success is XML and a failure is not");
        Demand(response.body.size() <= kLargestReply, "a reply is bounded");
    }
}

} // namespace

// A text from outside: typed into a form, a value of a query, a query, or arbitrary bytes.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckXml(text);
    CheckJson(text);
    CheckTyped(text);
    CheckFold(text);
    CheckSearches(text);
    CheckScripts(text);
    CheckScripts("state_id=US&city_string=" + text);
    CheckScripts("zipcode=" + text + "&aid=" + text);
    return 0;
}
