// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Makes a store with registered phones, for a measurement with many of them: installation "bench-N" has the
// phone "a@N.example" of the given kind of address.
#include "secrets/Keys.h"
#include "store/SqliteStore.h"

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char* argv[])
{
    using namespace beacond;
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s STATE_FOLDER COUNT KIND\n", argv[0]);
        return 2;
    }
    const std::string folder = argv[1];
    const Keys keys = Keys::FromFolder(folder + "/keys");
    SqliteStore store(folder + "/service.db");
    const SignupLimits limits{1'000'000, 1'000'000, 1'000'000};
    store.Begin();
    for (long number = 0; number < std::strtol(argv[2], nullptr, 10); ++number) {
        const std::string address = "a@" + std::to_string(number) + ".example";
        (void)store.SignUp({argv[3], keys.address.Seal(address), address, address, 1800, "bench", "bench"},
                           limits);
        const std::string installation = keys.lookup.Hash("installation", "bench-" + std::to_string(number));
        if (store.Confirm(address, installation) != Confirmation::Confirmed) {
            return 1;
        }
    }
    store.End();
}
