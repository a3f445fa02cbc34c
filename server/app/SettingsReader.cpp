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

void SettingsReader::FailAt(const toml::node* node, std::string_view key, const std::string& reason)
{
    std::ostringstream text;
    text << m_name;
    const toml::source_index line = node == nullptr ? 0 : node->source().begin.line;
    if (line > 0) {
        text << ':' << line;
    }
    text << ": " << key << ": " << reason;
    m_mistakes.emplace(line, text.str());
}

void SettingsReader::Fail(std::string_view key, const std::string& reason)
{
    FailAt(Find(key), key, reason);
}

void SettingsReader::Take(std::string_view key, std::string& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        if (const auto text = node->value_exact<std::string>()) {
            value = *text;
        } else {
            FailAt(node, key, "a text in quotes is expected");
        }
    }
    m_values[std::string(key)] = value;
}

void SettingsReader::Take(std::string_view key, std::filesystem::path& value)
{
    std::string text = value.string();
    Take(key, text);
    if (text.empty()) {
        Fail(key, "a path is expected");
    }
    value = text;
}

void SettingsReader::Take(std::string_view key, std::int64_t& value, std::int64_t lowest,
                          std::int64_t highest)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const auto number = node->value_exact<std::int64_t>();
        if (number && *number >= lowest && *number <= highest) {
            value = *number;
        } else {
            FailAt(node, key,
                   "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
                       " is expected");
        }
    }
    m_values[std::string(key)] = std::to_string(value);
}

void SettingsReader::Take(std::string_view key, std::vector<std::string>& value)
{
    if (const toml::node* const node = Find(key); node != nullptr) {
        const toml::array* const items = node->as_array();
        if (items != nullptr && (items->empty() || items->is_homogeneous(toml::node_type::string))) {
            value.clear();
            for (const toml::node& item : *items) {
                value.push_back(item.value_or(std::string()));
            }
        } else {
            FailAt(node, key, "a list of texts is expected");
        }
    }
    std::string& lines = m_values[std::string(key)];
    for (const std::string& item : value) {
        lines += item + '\n';
    }
}

void SettingsReader::Take(std::string_view key, ListenAddress& value)
{
    std::ostringstream text;
    text << value;
    std::string address = text.str();
    Take(key, address);
    try {
        value = ParseListenAddress(address);
    } catch (const std::invalid_argument& error) {
        Fail(key, error.what());
    }
}

void SettingsReader::RequireNoMistake()
{
    FailAtUnknown(m_root, "");
    std::vector<std::string> lines;
    for (const auto& [line, text] : m_mistakes) {
        lines.push_back(text);
    }
    if (!lines.empty()) {
        throw SettingsError(std::move(lines));
    }
}

void SettingsReader::FailAtUnknown(const toml::table& table, const std::string& prefix)
{
    for (const auto& [name, node] : table) {
        const std::string key = prefix + std::string(name.str());
        const auto isWithin = [&](const auto& known) { return known.first.starts_with(key + '.'); };
        const toml::table* const inner = node.as_table();
        if (name.str().find('.') != std::string_view::npos) {
            FailAt(&node, key, "unknown key: a name in quotes is no table and key");
        } else if (inner != nullptr && std::any_of(m_values.begin(), m_values.end(), isWithin)) {
            FailAtUnknown(*inner, key + '.');
        } else if (!m_values.contains(key)) {
            FailAt(&node, key, "unknown key");
        }
    }
}

} // namespace beacond
