// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace beacond {

/// The parameters of a query as the desktop program writes it: nothing but "%XX" is an escape, a plus is a
/// plus, and a "#" belongs to its value.
class Query final
{
public:
    /// Further parameters are ignored.
    static constexpr std::size_t kMostParameters = 32;

    enum class Plus {
        Literal,
        Space ///< in the body that a browser makes of a form
    };

    /// @param text behind the "?"; must outlive the query
    explicit Query(std::string_view text, Plus plus = Plus::Literal);

    /// The value of the first parameter of this very name, empty if there is none. Escapes are decoded once;
    /// invalid ones are kept unchanged. The result is UTF-8: bytes that are not are read as windows-1252. A
    /// control character of ASCII becomes a space.
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
