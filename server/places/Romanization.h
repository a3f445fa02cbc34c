// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace beacond {

/// The name of a place as people write it. The tables romanize the names of countries with another script by
/// scientific rules: "Thāne", "Al Khuşūş", "‘Arīqah". For these countries (two letters of ISO 3166-1) the
/// result has no long vowels, emphatic consonants and left half rings: "Thane", "Al Khusus", "Ariqah".
/// They also end before a comma, "-si" in Korea and a soft sign: "Goyang", "Homyel" for "Goyang-si",
/// "Homyel'". Accents of French ("Béjaïa") stay. Names of other countries and invalid UTF-8 stay unchanged.
[[nodiscard]] std::string CommonSpelling(std::string_view name, std::string_view country);

} // namespace beacond
