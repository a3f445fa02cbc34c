// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/TextWording.h"

#include "support/Ascii.h"

#include <algorithm>
#include <array>

namespace beacond {

namespace {

struct Wording
{
    std::string_view language;
    std::array<std::string_view, 6> prayers;
    std::string_view last; ///< to a device that another one replaces
};

constexpr std::array<Wording, 6> kWordings = {{
    {"en",
     {"Fajr", "Shuruq", "Duhr", "Asr", "Maghrib", "Isha"},
     "Dusk Beacon: another address has taken the place of this one. If that was not you, sign up again. This "
     "is the last message."},
    {"ar",
     {"الفجر", "الشروق", "الظهر", "العصر", "المغرب", "العشاء"},
     "Dusk Beacon: حل عنوان آخر محل هذا العنوان. إن لم تفعل ذلك فسجل من جديد. هذه آخر رسالة."},
    {"fr",
     {"Fajr", "Chourouq", "Dhouhr", "Asr", "Maghrib", "Icha"},
     "Dusk Beacon : une autre adresse remplace celle-ci. Si ce n'était pas vous, inscrivez-vous de nouveau. "
     "C'est le dernier message."},
    {"id",
     {"Subuh", "Terbit", "Zuhur", "Asar", "Magrib", "Isya"},
     "Dusk Beacon: alamat lain telah menggantikan alamat ini. Jika bukan Anda, daftar lagi. Ini pesan "
     "terakhir."},
    {"tr",
     {"Sabah", "Güneş", "Öğle", "İkindi", "Akşam", "Yatsı"},
     "Dusk Beacon: bu adresin yerini başka bir adres aldı. Bunu siz yapmadıysanız yeniden kaydolun. Bu son "
     "mesajdır."},
    {"ur",
     {"فجر", "طلوع آفتاب", "ظہر", "عصر", "مغرب", "عشاء"},
     "Dusk Beacon: اس پتے کی جگہ دوسرا پتہ آ گیا ہے۔ اگر یہ آپ نے نہیں کیا تو دوبارہ اندراج کریں۔ یہ آخری "
     "پیغام ہے۔"},
}};

const Wording* WordingOf(std::string_view language)
{
    const auto* const found = std::find_if(kWordings.begin(), kWordings.end(), [&](const Wording& wording) {
        return wording.language == language;
    });
    return found == kWordings.end() ? nullptr : found;
}

} // namespace

bool IsTextLanguage(std::string_view language)
{
    return WordingOf(language) != nullptr;
}

std::string TextLanguages()
{
    std::string languages;
    for (const Wording& wording : kWordings) {
        languages += (languages.empty() ? "" : ", ") + std::string(wording.language);
    }
    return languages;
}

bool IsClockTime(std::string_view text)
{
    const std::size_t colon = text.find(':');
    if ((colon != 1 && colon != 2) || text.size() != colon + 3 ||
        std::count_if(text.begin(), text.end(), &IsDigit) != static_cast<std::ptrdiff_t>(colon) + 2) {
        return false;
    }
    const int hour = text[0] - '0';
    const bool isHour = colon == 1 || hour < 2 || (hour == 2 && text[1] <= '3');
    return isHour && text[colon + 1] <= '5';
}

std::string PrayerText(std::string_view language, int prayer, std::string_view time)
{
    const Wording* const wording = WordingOf(language);
    const Wording& used = wording == nullptr ? kWordings.front() : *wording;
    if (prayer == 0) {
        return std::string(used.last);
    }
    std::string text(used.prayers[static_cast<std::size_t>(std::clamp(prayer, 1, 6)) - 1]);
    return IsClockTime(time) ? text + ' ' + std::string(time) : text;
}

} // namespace beacond
