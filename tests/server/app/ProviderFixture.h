// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "server/Becomes.h"
#include "server/app/ServiceFixture.h"
#include "server/messages/ScriptedServer.h"

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>
#include <regex>
#include <set>
#include <string>

/// The real program with a provider on the loopback that takes the messages to mail addresses.
class ProviderFixture : public ServiceFixture
{
protected:
    /// @param keys of the channel, further ones
    /// @param messages further keys of the table "messages"
    void ConfigureProvider(const std::string& keys = {}, const std::string& messages = {},
                           const std::string& more = {}, const std::string& channels = "\"web\"")
    {
        Configure("[messages]\nchannels = [" + channels + "]\n" + messages +
                  "[[messages.channel]]\nname = \"web\"\ntype = \"http\"\nkind = \"mail\"\n"
                  "body_type = \"text\"\nbody = \"{address} {text}\"\ntimeout = 1\nper_second = 1000\n"
                  "accepted_text = \"queued\"\n" +
                  (keys.find("url") == std::string::npos
                       ? "url = \"http://127.0.0.1:" + std::to_string(provider.Port()) + "/\"\n"
                       : "") +
                  keys + more);
    }
    /// The messages that were confirmed to the service, by address.
    std::map<std::string, int> Texts()
    {
        const std::lock_guard lock(mutex);
        return texts;
    }
    std::string CodeOf(const std::string& address)
    {
        const std::lock_guard lock(mutex);
        return codes[address];
    }
    /// The identifier of an installation: shorter ones do not bind.
    static std::string IdentifierOf(const std::string& installation)
    {
        return installation + "-of-an-older-service";
    }
    /// Signs up the address by the form, and returns the target that confirms it for the installation.
    std::string SignUp(unsigned short port, const std::string& address, const std::string& installation)
    {
        const std::string form = "address=" + std::regex_replace(address, std::regex("@"), "%40");
        EXPECT_NE(PostSignup(port, form).find("on its way"), std::string::npos) << address;
        return kScripts + "ma/confirmSignup.pl?prod_string=" + IdentifierOf(installation) +
               "&vCode=" + CodeOf(address);
    }
    void Register(unsigned short port, const std::string& address, const std::string& installation)
    {
        EXPECT_NE(Fetch(port, SignUp(port, address, installation)).find("result=\"1\""), std::string::npos);
    }
    std::string Call(unsigned short port, const std::string& installation, int prayer,
                     const std::string& time = "18:42")
    {
        return Fetch(port, kScripts + "prayerCall.pl?prod_string=" + IdentifierOf(installation) +
                               "&pno=" + std::to_string(prayer) + "&ma=1&time=" + time);
    }
    /// Waits until the outbox is empty.
    [[nodiscard]] bool Drained()
    {
        return Becomes([this] { return Run({"outbox"}).output.empty(); });
    }

    std::mutex mutex;
    std::map<std::string, std::string> codes;
    std::map<std::string, int> texts;
    std::multiset<std::string> wordings;
    /// In place of the receipt of a text: false to go on with it.
    std::function<bool(Conversation&, const std::string& address)> instead;

private:
    void Play(Conversation& client)
    {
        for (std::string request = client.ReadRequest(); !request.empty(); request = client.ReadRequest()) {
            const std::string body = request.substr(request.find("\r\n\r\n") + 4);
            const std::string address = body.substr(0, body.find(' '));
            std::smatch match;
            const bool isCode = std::regex_search(body, match, std::regex("personal code: ([0-9 ]{19})"));
            if (!isCode && instead && instead(client, address)) {
                return;
            }
            {
                const std::lock_guard lock(mutex);
                if (isCode) {
                    codes[address] = std::regex_replace(match[1].str(), std::regex(" "), "");
                } else {
                    ++texts[address];
                    wordings.insert(body.substr(std::min(body.size(), address.size() + 1)));
                }
            }
            client.Write("HTTP/1.1 200 x\r\nContent-Length: 6\r\n\r\nqueued");
        }
    }

protected:
    // The last member: its threads use the others.
    ScriptedServer provider{[this](Conversation& client) { Play(client); }};
};
