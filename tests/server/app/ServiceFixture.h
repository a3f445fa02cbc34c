// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "server/app/ServiceProcess.h"
#include "server/places/SmallTables.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <string>
#include <vector>

/// The real program with a small places file, on ports that the system chooses.
class ServiceFixture : public testing::Test
{
protected:
    ServiceFixture()
    {
        SmallTables tables;
        tables.places = PlaceLine{"104515", "Makkah", "Mecca",   "21.42664",   "39.82563",
                                  "SA",     "14",     "1323624", "Asia/Riyadh"}
                            .Text();
        tables.Import(folder);
        Configure("");
    }

    /// @param more further tables of the configuration, as text
    /// @param http further keys of the table "http"
    void Configure(const std::string& more, const std::string& http = {})
    {
        Write(folder / "service.toml",
              "[http]\nlisten = \"127.0.0.1:0\"\n" + http +
                  "[metrics]\nlisten = \"127.0.0.1:0\"\n[places]\nfile = \"places.bin\"\n" + more);
    }
    [[nodiscard]] std::string Path() const { return (folder / "").string(); }
    ProcessEnd Run(std::vector<std::string> arguments, const std::string& input = {})
    {
        arguments.insert(arguments.end(), {"--config", "service.toml"});
        return RunService(Path(), arguments, input);
    }

    /// Starts the service and waits until it is ready. Returns its port; 0 if it ended before.
    /// @param prepare is called in the child process before exec
    unsigned short Serve(const std::function<void()>& prepare = {})
    {
        service.emplace(Path(), serve, "", prepare);
        return service->AwaitPort();
    }
    /// Ends the service with SIGTERM.
    ProcessEnd Terminate()
    {
        service->Signal(SIGTERM);
        return service->Wait();
    }

    const std::string kScripts = "/cgi-bin/dbeacon/";
    TemporaryFolder folder;
    const std::vector<std::string> serve{"serve", "--config", "service.toml"};
    std::optional<ServiceProcess> service;
};
