// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculation/Calculator.h"
#include "calculation/DuskBeaconDBN.h"
#include "fuzz/FuzzTarget.h"

#include <array>

namespace {

using Short = std::int16_t;

class Reader final
{
public:
    Reader(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }
    [[nodiscard]] bool IsAtEnd() const { return m_at >= m_size; }
    std::uint8_t Byte() { return IsAtEnd() ? std::uint8_t{0} : m_data[m_at++]; }
    /// Low byte first.
    Short Number()
    {
        const unsigned int low = Byte();
        return static_cast<Short>(
            static_cast<std::uint16_t>(low | (static_cast<unsigned int>(Byte()) << 8U)));
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

/// Last values set; results depend on these alone, not on earlier calls.
struct Stored
{
    Short latitude = 0;
    Short longitude = 0;
    Short offset = 0;
    Short day = 1;
    Short month = 1;
    Short year = 2000;
    std::array<Short, 10> margins{};
    Short fajr = -1800;
    Short isha = -1700;

    [[nodiscard]] calculation::Calculator Fresh() const
    {
        calculation::Calculator fresh;
        fresh.SetHorParams({latitude, longitude}, offset, day, month, year);
        fresh.SetHorTemkin(margins);
        fresh.SetHorAngle(fajr, isha);
        return fresh;
    }
};

bool IsWithin(int value, int least, int most)
{
    return value >= least && value <= most;
}

void SetPlaceAndDate(Stored& stored, Reader& reader)
{
    stored.latitude = reader.Number();
    stored.longitude = reader.Number();
    stored.offset = reader.Number();
    stored.day = reader.Number();
    stored.month = reader.Number();
    stored.year = reader.Number();
    SetHorParams(stored.latitude, stored.longitude, stored.offset, stored.day, stored.month, stored.year);
}

void SetMargins(Stored& stored, Reader& reader)
{
    for (Short& margin : stored.margins) {
        margin = reader.Number();
    }
    const auto& m = stored.margins;
    SetHorTemkin(m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9]);
}

void SetAngles(Stored& stored, Reader& reader)
{
    stored.fajr = reader.Number();
    const Short second = reader.Number();
    const Short third = reader.Number();
    stored.isha = reader.Number();
    SetHorAngle(stored.fajr, second, third, stored.isha);
}

void ReadSlot(const Stored& stored, Short slot)
{
    const Short minute = Horarium(slot);
    const bool isUsed = slot == 1 || slot == 2 || IsWithin(slot, 5, 7) || slot == 9 || slot == 10;
    Demand(isUsed ? IsWithin(minute, 1, 1439) : minute == -1,
           "a slot holds a minute that can be announced, or -1");
    Demand(minute == stored.Fresh().Horarium(slot), "a slot rests on what is stored alone");
}

void ReadSky(const Stored& stored, Short minute)
{
    const Short sun = SunElev(minute);
    const Short moon = MoonElevation(minute);
    Demand(IsWithin(sun, -900, 900), "the sun stands between nadir and zenith");
    Demand(IsWithin(moon, -900, 900), "the moon stands between nadir and zenith");
    Demand(sun == stored.Fresh().SunElev(minute), "the sun rests on what is stored alone");
    Demand(moon == stored.Fresh().MoonElevation(minute), "the moon rests on what is stored alone");
}

void ReadQibla(const Stored& stored)
{
    const Short direction = QiblaDir();
    Demand(IsWithin(direction, 0, 3599), "the Qibla lies on the circle");
    Demand(direction == stored.Fresh().QiblaDir(), "the Qibla rests on what is stored alone");
}

void ReadHijriDate(const Stored& stored)
{
    const int day = Hday();
    const int month = Hmon();
    const int year = Hyear();
    Demand(IsWithin(day, 1, 30), "a month has 30 days at most");
    Demand(IsWithin(month, 1, 12), "a year has twelve months");
    // At either end of the tables of Umm al-Qura a day may repeat or be skipped.
    const bool isAtSeam = IsWithin(year, 1299, 1300) || IsWithin(year, 1600, 1601);
    if (isAtSeam || stored.day == INT16_MAX || !IsWithin(year, INT16_MIN + 1, INT16_MAX - 1)) {
        return;
    }
    Stored tomorrow = stored;
    ++tomorrow.day;
    const calculation::HijriDate next = tomorrow.Fresh().Hijri();
    const bool isSameMonth = next.day == day + 1 && next.month == month && next.year == year;
    const bool isNewMonth = day >= 29 && next.day == 1 && next.month == month % 12 + 1 &&
                            next.year == year + (month == 12 ? 1 : 0);
    Demand(isSameMonth || isNewMonth, "tomorrow is the day after today");
}

void Step(Stored& stored, Reader& reader)
{
    switch (reader.Byte() % 8) {
    case 0:
        SetPlaceAndDate(stored, reader);
        break;
    case 1:
        SetMargins(stored, reader);
        break;
    case 2:
        SetAngles(stored, reader);
        break;
    case 3:
        ReadSlot(stored, reader.Number());
        break;
    case 4:
        for (Short slot = 1; slot <= 10; ++slot) {
            ReadSlot(stored, slot);
        }
        break;
    case 5:
        ReadSky(stored, reader.Number());
        break;
    case 6:
        ReadQibla(stored);
        break;
    default:
        ReadHijriDate(stored);
        break;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The module keeps its state between inputs; start each with the place and date of a fresh module.
    Stored stored;
    SetHorParams(0, 0, 0, 1, 1, 2000);
    SetHorTemkin(0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    SetHorAngle(stored.fajr, 500, 500, stored.isha);
    Reader reader(data, size);
    while (!reader.IsAtEnd()) {
        Step(stored, reader);
    }
    return 0;
}
