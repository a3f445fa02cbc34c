// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsReader.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace beacond {

const toml::node* SettingsReader::Find(std::string_view key) const
{
    return m_root.at_path(key).node();
}

void SettingsReader::AddErrorAt(const toml::node* node, std::string_view key, const std::string& reason)
{
    std::ostringstream text;
    text << m_name;
    const toml::source_index line = node == nullptr ? 0 : node->source().begin.line;
    if (line > 0) {
        text << ':' << line;
    }
    text << ": " << key << ": " << reason;
    m_errors.emplace(line, text.str());
}

void SettingsReader::AddError(std::string_view key, const std::string& reason)
{
    AddErrorAt(Find(key), key, reason);
}

void SettingsReader::Read(std::string_view key, std::string& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        if (const auto text = node->value_exact<std::string>()) {
            value = *text;
        } else {
            AddErrorAt(node, key, "a text in quotes is expected");
        }
    }
    m_values[std::string(key)] = value;
}

void SettingsReader::Read(std::string_view key, std::filesystem::path& value)
{
    std::string text = value.string();
    Read(key, text);
    if (text.empty()) {
        AddError(key, "a path is expected");
    }
    value = text;
}

void SettingsReader::Read(std::string_view key, std::int64_t& value, std::int64_t lowest,
                          std::int64_t highest)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const auto number = node->value_exact<std::int64_t>();
        if (number && *number >= lowest && *number <= highest) {
            value = *number;
        } else {
            AddErrorAt(node, key,
                       "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
                           " is expected");
        }
    }
    m_values[std::string(key)] = std::to_string(value);
}

void SettingsReader::Read(std::string_view key, double& value, double lowest, double highest)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const auto number = node->value<double>();
        if (number && *number >= lowest && *number <= highest) {
            value = *number;
        } else {
            std::ostringstream reason;
            reason << "a number from " << lowest << " to " << highest << " is expected";
            AddErrorAt(node, key, reason.str());
        }
    }
    m_values[std::string(key)] = std::to_string(value);
}

void SettingsReader::Read(std::string_view key, std::vector<std::int64_t>& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const toml::array* const items = node->as_array();
        if (items != nullptr && (items->empty() || items->is_homogeneous(toml::node_type::integer))) {
            value.clear();
            for (const toml::node& item : *items) {
                value.push_back(item.value_or(std::int64_t{0}));
            }
        } else {
            AddErrorAt(node, key, "a list of whole numbers is expected");
        }
    }
    std::string& text = m_values[std::string(key)];
    for (const std::int64_t item : value) {
        text += std::to_string(item) + ' ';
    }
}

void SettingsReader::Read(std::string_view key, std::map<std::string, std::string>& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const toml::table* const items = node->as_table();
        if (items != nullptr && (items->empty() || items->is_homogeneous(toml::node_type::string))) {
            value.clear();
            for (const auto& [name, item] : *items) {
                value[std::string(name.str())] = item.value_or(std::string());
            }
        } else {
            AddErrorAt(node, key, "a table of texts is expected");
        }
    }
    std::string& lines = m_values[std::string(key)];
    for (const auto& [name, item] : value) {
        lines.append(name).append("=").append(item).append("\n");
    }
}

void SettingsReader::ReadOptional(std::string_view key, std::filesystem::path& value)
{
    std::string text = value.string();
    Read(key, text);
    value = text;
}

std::vector<std::string> SettingsReader::TablesOf(std::string_view key)
{
    const toml::node* const node = Find(key);
    if (node == nullptr) {
        return {};
    }
    const toml::array* const items = node->as_array();
    if (items == nullptr || !items->is_homogeneous(toml::node_type::table)) {
        AddErrorAt(node, key, "a list of tables is expected: [[" + std::string(key) + "]]");
        m_values[std::string(key)];
        return {};
    }
    std::vector<std::string> keys;
    for (std::size_t index = 0; index < items->size(); ++index) {
        keys.push_back(std::string(key) + '[' + std::to_string(index) + ']');
    }
    return keys;
}

void SettingsReader::Read(std::string_view key, std::vector<std::string>& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const toml::array* const items = node->as_array();
        if (items != nullptr && (items->empty() || items->is_homogeneous(toml::node_type::string))) {
            value.clear();
            for (const toml::node& item : *items) {
                value.push_back(item.value_or(std::string()));
            }
        } else {
            AddErrorAt(node, key, "a list of texts is expected");
        }
    }
    std::string& lines = m_values[std::string(key)];
    for (const std::string& item : value) {
        lines += item + '\n';
    }
}

void SettingsReader::Read(std::string_view key, ListenAddress& value)
{
    std::ostringstream text;
    text << value;
    std::string address = text.str();
    Read(key, address);
    try {
        value = ParseListenAddress(address);
    } catch (const std::invalid_argument& error) {
        AddError(key, error.what());
    }
}

void SettingsReader::RequireNoErrors()
{
    AddUnknownKeys(m_root, "");
    std::vector<std::string> lines;
    for (const auto& [line, text] : m_errors) {
        lines.push_back(text);
    }
    if (!lines.empty()) {
        throw SettingsError(std::move(lines));
    }
}

void SettingsReader::AddUnknownKeys(const toml::table& table, const std::string& prefix)
{
    for (const auto& [name, node] : table) {
        const std::string key = prefix + std::string(name.str());
        if (name.str().find('.') != std::string_view::npos) {
            AddErrorAt(&node, key, "unknown key: a name in quotes is no table and key");
        } else {
            AddUnknownKeysOf(node, key);
        }
    }
}

void SettingsReader::AddUnknownKeysOf(const toml::node& node, const std::string& key)
{
    const auto hasKeysWithin = [this](const std::string& prefix) {
        const auto next = m_values.lower_bound(prefix);
        return next != m_values.end() && next->first.starts_with(prefix);
    };
    const toml::table* const inner = node.as_table();
    const toml::array* const items = node.as_array();
    if (inner != nullptr && hasKeysWithin(key + '.')) {
        AddUnknownKeys(*inner, key + '.');
    } else if (items != nullptr && hasKeysWithin(key + '[')) {
        for (std::size_t index = 0; index < items->size(); ++index) {
            AddUnknownKeysOf((*items)[index], key + '[' + std::to_string(index) + ']');
        }
    } else if (!m_values.contains(key)) {
        AddErrorAt(&node, key, "unknown key");
    }
}

} // namespace beacond
