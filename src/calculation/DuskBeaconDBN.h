// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdint.h>

// The functions of the module DuskBeacon.DBN. It is a calculator with a state: the three setters store a
// place, a date and what goes with them, and every reading answers for what was stored last. Before any
// setter that is 0 N 0 E, 1 January 2000, no offset, no margins, -18 and -17 degrees, but no Hijri date.
// Calls come from one thread.
//
// Every combination of arguments has an answer, at once; none is an error:
//  - A latitude beyond 90 degrees counts as the pole. Longitudes go round: 190 E is 170 W.
//  - The date is of the proleptic Gregorian calendar, and three numbers that name no day count on: month 13
//    is the January after, month 0 the December before, 31 February the 3rd (in leap years the 2nd) of March,
//    day 0 the eve of the first.
//  - Sun and moon of years outside -2000 to 5999 are those of the same date in the nearest cycle of 400 years
//    within.
//  - The offset may be any number of minutes, whether or not it suits the longitude.
//  - A twilight angle that is not below the sunrise's -0.8333 degrees counts as that: Fajr is sunrise, Isha
//    sunset. One below -90 counts as -90.
//
// No function allocates, waits for a lock, asks for the locale or reads a file, but for the Hijri date: the
// first of its three readings after SetHorParams opens one or two calendars of ICU, which allocate and lock,
// and loads its data when it is first used.

#ifdef __cplusplus
extern "C" {
#endif

// latitude, longitude: hundredths of a degree, north and east positive. offset: local clock less universal
// time in minutes, daylight saving included. day, month, year: the civil date of that clock.
void SetHorParams(int16_t latitude, int16_t longitude, int16_t offset, int16_t day, int16_t month,
                  int16_t year);

// Minutes to add to the slots 1 to 10; those of 3, 4 and 8 have no effect.
void SetHorTemkin(int16_t margin1, int16_t margin2, int16_t margin3, int16_t margin4, int16_t margin5,
                  int16_t margin6, int16_t margin7, int16_t margin8, int16_t margin9, int16_t margin10);

// Hundredths of a degree, negative below the horizon. The second and the third have no effect.
void SetHorAngle(int16_t fajr, int16_t second, int16_t third, int16_t isha);

// The slot's minute of the stored date, 1 to 1439: 1 Fajr, 2 sunrise, 5 the sun's transit, 6 and 7 Asr by one
// and two shadow lengths, 9 sunset, 10 Isha. These hold a minute on every day at every place;
// docs/accuracy.md tells by which rules where the sun itself gives none. An event of the neighbouring solar
// day that falls within the date (an Isha after midnight) is the date's. A margin that leads out of the date
// goes round the clock. Minute 0 is never given, since the program raises no alert then: a slot that comes
// to 0, its margin added, is 1. Any other slot holds -1.
int16_t Horarium(int16_t slot);

// Tenths of a degree clockwise from true north, 0 to 3599: the great circle to the Kaaba. 0 at the Kaaba and
// at its antipode; at a pole counted from the stored longitude's meridian as if it ran on through the pole.
int16_t QiblaDir(void);

// Airless topocentric altitude of the centre in tenths of a degree, -900 to 900. minute: of the stored date's
// clock; below 0 and from 1440 on it reaches into the days around.
int16_t SunElev(int16_t minute);
int16_t MoonElevation(int16_t minute);

// The Hijri date of the stored date: Umm al-Qura from 1300 to 1600 AH, the civil (tabular) calendar outside.
// Hmon is 1 to 12; Hyear stays within its 16 bits. Until SetHorParams has been called, or if ICU fails, each
// of them is 0.
int16_t Hday(void);
int16_t Hmon(void);
int16_t Hyear(void);

#ifdef __cplusplus
}
#endif
