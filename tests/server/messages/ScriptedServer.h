// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// A connection of a ScriptedServer.
class Conversation final
{
public:
    Conversation(int descriptor, const std::atomic<bool>& isEnding)
        : m_descriptor(descriptor)
        , m_isEnding(isEnding)
    {
    }

    /// Reads up to and including @p mark. Empty if the client closes before.
    std::string ReadThrough(std::string_view mark);
    /// A request of HTTP with its body; empty at the end of the connection.
    std::string ReadRequest();
    void Write(std::string_view bytes) const;
    /// Writes one byte every 50 ms until the client closes.
    void Drip(char byte) const;
    /// Waits until the client closes.
    void Hang();

private:
    bool ReceiveMore();

    int m_descriptor;
    const std::atomic<bool>& m_isEnding;
    std::string m_received;
};

/// A server on the loopback that plays a script with each connection, each on a thread.
class ScriptedServer final
{
public:
    using Script = std::function<void(Conversation&)>;

    explicit ScriptedServer(Script script);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    [[nodiscard]] unsigned short Port() const { return m_port; }
    [[nodiscard]] int Connections() const { return m_connections; }

private:
    void Accept();

    const Script m_script;
    int m_listener = -1;
    unsigned short m_port = 0;
    std::atomic<bool> m_isEnding{false};
    std::atomic<int> m_connections{0};
    std::vector<std::jthread> m_conversations;
    std::jthread m_accepter;
};

/// A mail server without TLS that takes each mail. The script can replace the reply to a command, or do
/// something else in its place.
class MailScript final
{
public:
    /// @param at the command to replace: "greeting", "EHLO", "AUTH", "MAIL", "RCPT", "DATA", "dot"; empty for
    /// none
    explicit MailScript(std::string at = {}, ScriptedServer::Script instead = {},
                        std::string extensions = {});

    void operator()(Conversation& client);
    /// All that clients have sent.
    [[nodiscard]] std::string Received() const;

private:
    bool Answer(Conversation& client, const std::string& command, std::string_view reply) const;

    std::string m_at;
    ScriptedServer::Script m_instead;
    std::string m_extensions;
    mutable std::mutex m_mutex;
    std::string m_received;
};
