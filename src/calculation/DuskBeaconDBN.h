// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdint.h>

// The functions of the module DuskBeacon.DBN. The module has a state: the three setters store place, date,
// margins and angles, and each getter computes its value from what was stored last. The initial state is 0 N
// 0 E, 1 January 2000, no offset, no margins, -18 and -17 degrees, but no Hijri date. Not thread-safe: all
// calls come from one thread.
//
// Every combination of arguments is valid:
//  - A latitude beyond 90 degrees counts as the pole. Longitudes wrap around: 190 E is 170 W.
//  - The date is one of the proleptic Gregorian calendar. Numbers out of range continue into the neighbouring
//    months and years: month 13 is the next January, month 0 the December before, 31 February is 3 March (2
//    March in a leap year), day 0 is the last day of the month before.
//  - For years outside -2000 to 5999 sun and moon are those of the same date in the nearest year inside,
//    whole cycles of 400 years away.
//  - The offset need not match the longitude.
//  - A twilight angle above the -0.8333 degrees of sunrise counts as -0.8333: Fajr is then sunrise, Isha
//    sunset. An angle below -90 counts as -90.
//
// No function allocates, locks, or reads the locale or a file.

#ifdef __cplusplus
extern "C" {
#endif

// latitude, longitude: hundredths of a degree, north and east positive. offset: local time minus universal
// time in minutes, daylight saving included. day, month, year: the local civil date.
void SetHorParams(int16_t latitude, int16_t longitude, int16_t offset, int16_t day, int16_t month,
                  int16_t year);

// Minutes to add to the slots 1 to 10; those of 3, 4 and 8 have no effect.
void SetHorTemkin(int16_t margin1, int16_t margin2, int16_t margin3, int16_t margin4, int16_t margin5,
                  int16_t margin6, int16_t margin7, int16_t margin8, int16_t margin9, int16_t margin10);

// Hundredths of a degree, negative below the horizon. The second and the third have no effect.
void SetHorAngle(int16_t fajr, int16_t second, int16_t third, int16_t isha);

// The minute of a slot on the stored date, 1 to 1439: 1 Fajr, 2 sunrise, 5 the sun's transit, 6 and 7 Asr by
// one and two shadow lengths, 9 sunset, 10 Isha. These slots have a minute on every day at every place;
// docs/accuracy.md has the rules for days on which the sun gives none. An event of a neighbouring solar day
// that falls into the date (an Isha after midnight) belongs to the date. The sum with the margin wraps around
// the clock. Minute 0 is never returned, since the program raises no alert then: a slot that comes
// to 0, its margin added, is 1. Any other slot returns -1.
int16_t Horarium(int16_t slot);

// Initial bearing of the great circle to the Kaaba in tenths of a degree clockwise from true north, 0 to
// 3599. 0 at the Kaaba and at its antipode. At a pole it is the limit of the bearing along the meridian of
// the stored longitude.
int16_t QiblaDir(void);

// Topocentric altitude of the centre in tenths of a degree, without refraction, -900 to 900. minute: local
// time on the stored date; a value below 0 or above 1439 is on the days before or after.
int16_t SunElev(int16_t minute);
int16_t MoonElevation(int16_t minute);

// The Hijri date of the stored date: Umm al-Qura from 1300 to 1600 AH, the civil (tabular) calendar outside.
// Hmon is 1 to 12; Hyear is limited to its 16 bits. Until SetHorParams has been called, each of them is
// 0.
int16_t Hday(void);
int16_t Hmon(void);
int16_t Hyear(void);

#ifdef __cplusplus
}
#endif
