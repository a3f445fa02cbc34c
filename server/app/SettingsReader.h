// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Settings.h"

#include <toml++/toml.h>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace beacond {

/// Reads the keys of one file, and records which keys were read, to report unknown ones.
class SettingsReader final
{
public:
    SettingsReader(const toml::table& root, std::string_view name)
        : m_root(root)
        , m_name(name)
    {
    }

    /// Each function reads the value of a key if the file has it, and keeps the default otherwise. A value of
    /// the wrong type is an error.
    void Read(std::string_view key, std::string& value);
    void Read(std::string_view key, std::filesystem::path& value);
    void Read(std::string_view key, std::int64_t& value, std::int64_t lowest, std::int64_t highest);
    void Read(std::string_view key, double& value, double lowest, double highest);
    void Read(std::string_view key, std::vector<std::string>& value);
    void Read(std::string_view key, std::vector<std::int64_t>& value);
    /// A table of texts.
    void Read(std::string_view key, std::map<std::string, std::string>& value);
    void Read(std::string_view key, ListenAddress& value);

    /// A path that may be empty.
    void ReadOptional(std::string_view key, std::filesystem::path& value);
    /// The keys of the tables in the list of tables [[key]]: "key[0]", "key[1]".
    [[nodiscard]] std::vector<std::string> TablesOf(std::string_view key);

    /// Records an error, which RequireNoErrors throws.
    void AddError(std::string_view key, const std::string& reason);
    /// Throws SettingsError if there was an error, or if the file has a key that was not read.
    void RequireNoErrors();
    /// The values of the keys that were read, as texts.
    [[nodiscard]] const Settings::Values& Values() const { return m_values; }

private:
    const toml::node* Find(std::string_view key) const;
    void AddUnknownKeysOf(const toml::node& node, const std::string& key);
    void AddUnknownKeys(const toml::table& table, const std::string& prefix);
    void AddErrorAt(const toml::node* node, std::string_view key, const std::string& reason);

    const toml::table& m_root;
    std::string_view m_name;
    Settings::Values m_values;
    std::multimap<toml::source_index, std::string> m_errors; ///< by their lines in the file
};

} // namespace beacond
