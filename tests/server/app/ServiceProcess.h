// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "server/TemporaryFolder.h"

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

/// The exit status and the output of a run of dusk-beacond.
struct ProcessEnd
{
    int status = -1; ///< exit status, or 128 and the signal
    std::string output;
    std::string errors;
};

/// The real program, started in a given folder.
class ServiceProcess final
{
public:
    /// @param folder becomes the working directory
    /// @param prepare is called in the child process before exec
    ServiceProcess(std::string folder, const std::vector<std::string>& arguments,
                   const std::string& input = {}, const std::function<void()>& prepare = {});
    /// Kills the process if it still runs.
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    void Signal(int number) const;
    [[nodiscard]] pid_t Id() const { return m_process; }
    /// Waits for the end of the process.
    ProcessEnd Wait();
    /// Waits until the log says that the service is ready. Returns its port, or 0 if it ended before.
    unsigned short AwaitPort();
    /// The same for the listener of /metrics.
    unsigned short AwaitMetricsPort();
    /// Waits until the log contains the text; false if the process ends without it, or after 20 seconds.
    bool AwaitLog(const std::string& text);

private:
    [[nodiscard]] unsigned short PortBehind(const std::string& text);
    [[nodiscard]] std::string Errors() const;
    [[nodiscard]] bool HasEnded() const;

    std::string m_folder;
    pid_t m_process = -1;
};

/// Runs the program to its end.
[[nodiscard]] ProcessEnd RunService(const std::string& folder, const std::vector<std::string>& arguments,
                                    const std::string& input = {});

/// The body of the reply to a GET on the loopback; empty without a reply.
[[nodiscard]] std::string Fetch(unsigned short port, const std::string& target);
/// Sends the text and returns the whole reply.
[[nodiscard]] std::string Exchange(unsigned short port, const std::string& request);
/// Submits the sign-up form and returns the whole reply.
/// @param fields further header fields, each with its line end
[[nodiscard]] std::string PostSignup(unsigned short port, const std::string& form,
                                     const std::string& fields = {});
