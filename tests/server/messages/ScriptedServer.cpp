// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/messages/ScriptedServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <regex>
#include <stdexcept>

namespace {

constexpr int kPollMilliseconds = 20;

bool IsReadable(int descriptor)
{
    pollfd poll{descriptor, POLLIN, 0};
    return ::poll(&poll, 1, kPollMilliseconds) > 0;
}

} // namespace

bool Conversation::ReceiveMore()
{
    while (!m_isEnding) {
        if (!IsReadable(m_descriptor)) {
            continue;
        }
        std::array<char, 4096> bytes{};
        const ssize_t count = ::recv(m_descriptor, bytes.data(), bytes.size(), 0);
        if (count > 0) {
            m_received.append(bytes.data(), static_cast<std::size_t>(count));
        }
        return count > 0;
    }
    return false;
}

std::string Conversation::ReadThrough(std::string_view mark)
{
    std::size_t found = 0;
    while ((found = m_received.find(mark)) == std::string::npos) {
        if (!ReceiveMore()) {
            return {};
        }
    }
    const std::string text = m_received.substr(0, found + mark.size());
    m_received.erase(0, found + mark.size());
    return text;
}

std::string Conversation::ReadRequest()
{
    std::string request = ReadThrough("\r\n\r\n");
    std::smatch length;
    if (std::regex_search(request, length, std::regex("Content-Length: ([0-9]+)"))) {
        const auto bytes = static_cast<std::size_t>(std::stoul(length[1]));
        while (m_received.size() < bytes && ReceiveMore()) {
        }
        request += m_received.substr(0, bytes);
        m_received.erase(0, bytes);
    }
    return request;
}

void Conversation::Write(std::string_view bytes) const
{
    (void)!::send(m_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void Conversation::Drip(char byte) const
{
    while (!m_isEnding && ::send(m_descriptor, &byte, 1, MSG_NOSIGNAL) == 1) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

void Conversation::Hang()
{
    while (ReceiveMore()) {
    }
}

ScriptedServer::ScriptedServer(Script script)
    : m_script(std::move(script))
    , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(m_listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(m_listener, 64) != 0 ||
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no listener");
    }
    m_port = ntohs(address.sin_port);
    m_accepter = std::jthread([this] { Accept(); });
}

ScriptedServer::~ScriptedServer()
{
    m_isEnding = true;
    m_accepter.join();
    m_conversations.clear();
    ::close(m_listener);
}

void ScriptedServer::Accept()
{
    while (!m_isEnding) {
        if (!IsReadable(m_listener)) {
            continue;
        }
        const int descriptor = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        const int on = 1;
        ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        ++m_connections;
        m_conversations.emplace_back([this, descriptor] {
            Conversation conversation(descriptor, m_isEnding);
            m_script(conversation);
            ::close(descriptor);
        });
    }
}

MailScript::MailScript(std::string at, ScriptedServer::Script instead, std::string extensions)
    : m_at(std::move(at))
    , m_instead(std::move(instead))
    , m_extensions(std::move(extensions))
{
}

std::string MailScript::Received() const
{
    const std::lock_guard lock(m_mutex);
    return m_received;
}

bool MailScript::Answer(Conversation& client, const std::string& command, std::string_view reply) const
{
    if (command == m_at) {
        m_instead(client);
        return false;
    }
    client.Write(reply);
    return true;
}

void MailScript::operator()(Conversation& client)
{
    const struct
    {
        const char* command;
        const char* reply;
    } replies[] = {{"EHLO", "250-mail.test\r\n"}, {"AUTH", "235 ok\r\n"},    {"MAIL", "250 ok\r\n"},
                   {"RCPT", "250 ok\r\n"},        {"DATA", "354 go on\r\n"}, {"QUIT", "221 bye\r\n"},
                   {"RSET", "250 ok\r\n"}};
    bool isOpen = Answer(client, "greeting", "220 mail.test ESMTP\r\n");
    while (isOpen) {
        const std::string line = client.ReadThrough("\r\n");
        {
            const std::lock_guard lock(m_mutex);
            m_received += line;
        }
        isOpen = !line.empty();
        for (const auto& [command, reply] : replies) {
            if (isOpen && line.starts_with(command)) {
                const bool isHello = line.starts_with("EHLO");
                isOpen = Answer(client, command, isHello ? reply + m_extensions + "250 HELP\r\n" : reply);
            }
        }
        if (isOpen && line == "DATA\r\n") {
            const std::string mail = client.ReadThrough("\r\n.\r\n");
            {
                const std::lock_guard lock(m_mutex);
                m_received += mail;
            }
            isOpen = Answer(client, "dot", "250 taken\r\n");
        }
    }
}
