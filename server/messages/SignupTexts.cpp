// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/SignupTexts.h"

namespace beacond {

std::string CodeMessage(AddressKind kind, std::int64_t device, std::string_view code, bool isStopRead)
{
    const std::string number = std::to_string(device);
    if (kind == AddressKind::Sms) {
        return "Dusk Beacon: mobile device ID " + number + ", personal code " + std::string(code) +
               ". Enter both in the program within 30 minutes. " +
               (isStopRead ? "STOP ends messages." : "The operator ends messages.");
    }
    const std::string_view end = isStopRead ? "\nTo end the messages, reply with the word STOP."
                                            : "\nTo end the messages, ask the operator of the service.";
    return "Your mobile device ID: " + number + "\nYour personal code: " + std::string(code) + R"(

Enter both in Dusk Beacon, under Alerts and Mobile Alert, within 30 minutes, and click Register.
If you did not ask for this, there is nothing to do: without the code nothing changes.)" +
           std::string(end);
}

std::string StopMessage()
{
    return "Dusk Beacon: the messages have ended, and your address is deleted. This is the last one.";
}

} // namespace beacond
