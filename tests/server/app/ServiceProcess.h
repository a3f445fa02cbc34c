// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "server/TemporaryFolder.h"

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

/// How a run of dusk-beacond ended, and what it wrote.
struct ProcessEnd
{
    int status = -1; ///< exit status, or 128 and the signal
    std::string output;
    std::string errors;
};

/// The real program, started in a folder of its own.
class ServiceProcess final
{
public:
    /// @param folder becomes the working directory
    /// @param prepare is called in the new process before the program takes its place
    ServiceProcess(std::string folder, const std::vector<std::string>& arguments,
                   const std::string& input = {}, const std::function<void()>& prepare = {});
    /// Kills it if it still runs.
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    void Signal(int number) const;
    [[nodiscard]] pid_t Id() const { return m_process; }
    /// Waits for its end.
    ProcessEnd Wait();
    /// Waits until its log says that it is ready; answers the port, or 0 if it ended before.
    unsigned short AwaitPort();
    /// The same of the listener for /metrics.
    unsigned short AwaitMetricsPort();
    /// Waits until its log holds the text; false if it ends without, or doesn't within 20 seconds.
    bool AwaitLog(const std::string& text);

private:
    [[nodiscard]] unsigned short PortBehind(const std::string& text);
    [[nodiscard]] std::string Errors() const;
    [[nodiscard]] bool HasEnded() const;

    std::string m_folder;
    pid_t m_process = -1;
};

/// Runs it to its end.
[[nodiscard]] ProcessEnd RunService(const std::string& folder, const std::vector<std::string>& arguments,
                                    const std::string& input = {});

/// The body of the reply to a GET of the loopback, empty if there was none.
[[nodiscard]] std::string Fetch(unsigned short port, const std::string& target);
/// The whole reply to what is sent.
[[nodiscard]] std::string Exchange(unsigned short port, const std::string& request);
/// The whole reply to the sign-up form.
/// @param fields more header fields, each with its line end
[[nodiscard]] std::string PostSignup(unsigned short port, const std::string& form,
                                     const std::string& fields = {});
