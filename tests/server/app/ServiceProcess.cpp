// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/app/ServiceProcess.h"

#include "server/Becomes.h"
#include "server/Files.h"
#include "server/http/RawClient.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>
#include <regex>
#include <stdexcept>

namespace {

void Redirect(const std::string& path, int flags, int to)
{
    const int descriptor = ::open(path.c_str(), flags, 0600);
    if (descriptor < 0 || ::dup2(descriptor, to) < 0) {
        ::_exit(126);
    }
}

} // namespace

ServiceProcess::ServiceProcess(std::string folder, const std::vector<std::string>& arguments,
                               const std::string& input, const std::function<void()>& prepare)
    : m_folder(std::move(folder))
{
    Write(m_folder + "/input", input);
    // Remove the log of an earlier process in that folder.
    Write(m_folder + "/errors", {});
    std::vector<char*> words;
    std::string program = DUSKBEACON_SERVICE_PROGRAM;
    words.push_back(program.data());
    std::vector<std::string> copies = arguments;
    for (std::string& argument : copies) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    m_process = ::fork();
    if (m_process == 0) {
        if (::chdir(m_folder.c_str()) != 0) {
            ::_exit(126);
        }
        Redirect("input", O_RDONLY, 0);
        Redirect("output", O_WRONLY | O_CREAT | O_TRUNC, 1);
        Redirect("errors", O_WRONLY | O_CREAT | O_TRUNC, 2);
        if (prepare) {
            prepare();
        }
        ::execv(program.c_str(), words.data());
        ::_exit(127);
    }
}

ServiceProcess::~ServiceProcess()
{
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    // Copy a sanitizer report to the log of the tests, where a step of the checks searches for it: the folder
    // with the report is deleted.
    const std::string errors = Errors();
    if (errors.find("Sanitizer: ") != std::string::npos ||
        errors.find("runtime error: ") != std::string::npos) {
        std::cerr << errors;
    }
}

void ServiceProcess::Signal(int number) const
{
    ::kill(m_process, number);
}

ProcessEnd ServiceProcess::Wait()
{
    int status = 0;
    ::waitpid(m_process, &status, 0);
    m_process = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), Read(m_folder + "/output"),
            Errors()};
}

std::string ServiceProcess::Errors() const
{
    return Read(m_folder + "/errors");
}

bool ServiceProcess::HasEnded() const
{
    siginfo_t ended = {};
    return ::waitid(P_PID, static_cast<id_t>(m_process), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           ended.si_pid != 0;
}

bool ServiceProcess::AwaitLog(const std::string& text)
{
    bool isThere = false;
    return Becomes([&] {
               const bool hasEnded = HasEnded();
               isThere = Errors().find(text) != std::string::npos;
               return isThere || hasEnded;
           }) &&
           isThere;
}

unsigned short ServiceProcess::AwaitPort()
{
    return PortBehind("ready on port ");
}

unsigned short ServiceProcess::AwaitMetricsPort()
{
    return PortBehind("metrics on port ");
}

unsigned short ServiceProcess::PortBehind(const std::string& text)
{
    std::smatch match;
    if (!AwaitLog(text)) {
        return 0;
    }
    const std::string errors = Errors();
    std::regex_search(errors, match, std::regex(text + "([0-9]+)"));
    return static_cast<unsigned short>(std::stoi(match[1]));
}

ProcessEnd RunService(const std::string& folder, const std::vector<std::string>& arguments,
                      const std::string& input)
{
    return ServiceProcess(folder, arguments, input).Wait();
}

std::string Exchange(unsigned short port, const std::string& request)
{
    try {
        RawClient client(port);
        client.Send(request);
        return client.ReadToEnd();
    } catch (const std::runtime_error&) { // no connection
        return {};
    }
}

std::string PostSignup(unsigned short port, const std::string& form, const std::string& fields)
{
    return Exchange(port, "POST /signup HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n"
                          "Content-Type: application/x-www-form-urlencoded\r\n"
                          "Content-Length: " +
                              std::to_string(form.size()) + "\r\n" + fields + "\r\n" + form);
}

std::string Fetch(unsigned short port, const std::string& target)
{
    const std::string reply =
        Exchange(port, "GET " + target + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    const std::size_t end = reply.find("\r\n\r\n");
    return end == std::string::npos ? std::string() : reply.substr(end + 4);
}
