// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace beacond {

/// The parameters of a query in the form of the desktop program: only "%XX" is an escape, "+" stands for
/// itself, and "#" is part of a value.
class Query final
{
public:
    /// Further parameters are ignored.
    static constexpr std::size_t kMostParameters = 32;

    enum class Plus {
        Literal,
        Space ///< in the body of a submitted form
    };

    /// @param text the part after the "?"; must outlive the query
    explicit Query(std::string_view text, Plus plus = Plus::Literal);

    /// The value of the first parameter with exactly this name, empty if there is none. Escapes are decoded
    /// once; invalid ones are kept unchanged. The result is UTF-8; a value that is not valid UTF-8 is read as
    /// windows-1252. ASCII control characters become spaces.
    [[nodiscard]] std::string Value(std::string_view name) const;

private:
    struct Parameter
    {
        std::string_view name;
        std::string_view value;
    };

    Plus m_plus;
    std::array<Parameter, kMostParameters> m_parameters{};
    std::size_t m_count = 0;
};

} // namespace beacond
