// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzWorld.h"
#include "fuzz/InputParts.h"
#include "platform/ProcessorTime.h"
#include "service/WebAd.h"
#include "strip/Banner.h"
#include "strip/HtmlText.h"
#include "strip/HtmlTokens.h"
#include "support/CodePage.h"

#include <QTextBlock>
#include <QTextDocument>

#include <sys/resource.h>

#include <algorithm>

namespace {

const QString kPage = QStringLiteral("temp.html");

bool IsWebAddress(const std::string& address)
{
    const std::string lower = LowerCase(address);
    return lower.starts_with("http://") || lower.starts_with("https://");
}

void CheckTokens(const std::string& page)
{
    HtmlTokens tokens(page);
    std::size_t left = page.size();
    while (const std::optional<HtmlToken> token = tokens.Next()) {
        Demand(tokens.Rest().size() < left, "each token takes a part of the page");
        left = tokens.Rest().size();
        if (token->kind != HtmlToken::Kind::Text) {
            Demand(!token->name.empty() && token->name == LowerCase(token->name), "a tag has a name");
        }
    }
}

void CheckTag(const HtmlToken& tag, std::vector<std::string>& open)
{
    constexpr std::array kDangerous{"script", "iframe", "object", "embed", "form",  "input",
                                    "link",   "base",   "meta",   "style", "frame", "applet"};
    Demand(std::ranges::find(kDangerous, tag.name) == kDangerous.end(),
           "a clean page holds nothing but what can be shown");
    for (const auto& [name, value] : tag.attributes) {
        Demand(!name.starts_with("on") && name != "background", "a clean page runs and loads nothing");
        Demand(name != "src" || value.starts_with("image:"), "pictures are named by number");
        Demand(name != "href" || IsWebAddress(value), "a link leads to the web");
        Demand(name != "style" || LowerCase(value).find("url") == std::string::npos, "a style loads nothing");
    }
    if (tag.kind == HtmlToken::Kind::Close) {
        Demand(!open.empty() && open.back() == tag.name, "tags end in the order of their beginning");
        open.pop_back();
    } else if (tag.name != "br" && tag.name != "hr" && tag.name != "img") {
        open.push_back(tag.name);
    }
}

void CheckBanner(const Banner& banner)
{
    HtmlTokens tokens(banner.html);
    std::vector<std::string> open;
    while (const std::optional<HtmlToken> token = tokens.Next()) {
        if (token->kind == HtmlToken::Kind::Text) {
            Demand(token->text.find_first_of("<>") == std::string_view::npos, "a text holds no markup");
        } else {
            CheckTag(*token, open);
        }
    }
    Demand(open.empty(), "every tag ends");
    Demand(banner.images.size() <= 16, "a strip has few pictures");
    for (const std::string& address : banner.images) {
        Demand(IsWebAddress(address) || LowerCase(address).starts_with("data:"),
               "a picture comes from the web or lies in the page");
    }
    if (banner.images.empty()) {
        // The second pass may remove spaces that were control characters before the first.
        const std::optional<Banner> second = CleanBanner(banner.html);
        const std::optional<Banner> third = second ? CleanBanner(second->html) : std::nullopt;
        Demand(third && third->html == second->html, "a clean page stays as it is");
    }
}

void CheckRequests(const FakeHttp& http)
{
    Demand(http.requests.isEmpty() && http.probes.isEmpty(), "nobody waits for an ad");
    for (const QString& address : http.backgroundRequests) {
        Demand(IsWebAddress(address.toStdString()), "nothing but the web is asked for a picture");
    }
}

void CheckLinks(const QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QString address = part.fragment().charFormat().anchorHref();
            Demand(address.isEmpty() || IsWebAddress(address.toStdString()),
                   "a link that can be followed leads to the web");
        }
    }
}

// The peak memory of this process.
qint64 MostKilobytes()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Shows the page in the strip; its pictures arrive one by one.
void CheckStrip(FuzzWorld& world, const QByteArray& page, const QByteArray& picture)
{
    WebAd strip(world.platform.http, nullptr);
    strip.resize(468, 60);
    strip.show();
    world.files.Write(kPage, page);
    const double start = ProcessorMilliseconds();
    strip.Navigate(world.files, kPage);
    static_cast<void>(strip.grab());
    // About ten times the cost without sanitizers.
    constexpr double kMostOfAPage = 500.0;
    Demand(ProcessorMilliseconds() - start < kMostOfAPage, "a page that is shown is shown quickly");
    CheckRequests(world.platform.http);
    CheckLinks(*strip.document());
    const qint64 memory = MostKilobytes();
    const double startOfPictures = ProcessorMilliseconds();
    for (const auto& done : world.platform.http.backgroundDone) {
        done(picture.isEmpty() ? std::nullopt : Http::Reply(picture));
    }
    static_cast<void>(strip.grab());
    // All pictures together may have four million pixels.
    constexpr double kMostOfPictures = 2000.0;
    constexpr qint64 kMostKilobytesOfPictures = 256LL * 1024;
    Demand(ProcessorMilliseconds() - startOfPictures < kMostOfPictures, "pictures come quickly");
    Demand(MostKilobytes() - memory < kMostKilobytesOfPictures, "pictures take what they may");
    CheckRequests(world.platform.http);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    InputParts parts(data, size);
    const QByteArray page = QByteArray::fromStdString(parts.Next());
    const QByteArray picture = QByteArray::fromStdString(parts.Next());
    const std::string text = FromCodePage(page).toStdString();
    CheckTokens(page.toStdString());
    if (const std::optional<Banner> banner = CleanBanner(text)) {
        CheckBanner(*banner);
    }
    FuzzWorld world;
    CheckStrip(world, page, picture);
    world.DemandAlive();
    return 0;
}
