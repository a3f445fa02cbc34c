// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "messages/Channel.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace beacond {

/// A folder from which a program of the operator takes messages, one file each: "To: ADDRESS", an empty line,
/// the text in UTF-8. A complete file appears under a name that ends in ".txt"; the names sort by age. A file
/// with another name is unfinished.
class Spool final
{
public:
    /// Creates the folder if it is missing, accessible only to its owner. Removes the unfinished files of an
    /// earlier process, since they contain addresses. Throws ChannelError, also if the folder is not
    /// writable.
    explicit Spool(std::filesystem::path folder);

    /// Returns when the file is on the disk. Throws ChannelError, and leaves no file. Thread-safe.
    /// @return nothing, or the reason why a power cut may still lose the message
    /// @param address without line breaks
    std::optional<std::string> Send(std::string_view address, std::string_view text) const;

private:
    void RemoveUnfinished() const;

    std::filesystem::path m_folder;
};

} // namespace beacond
