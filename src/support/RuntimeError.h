// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <exception>

/// Error numbers by which the failure paths of the program decide.
namespace ErrorNumber {
constexpr int kInvalidCall = 5;
constexpr int kOverflow = 6;
constexpr int kSubscript = 9;
constexpr int kDivisionByZero = 11;
constexpr int kTypeMismatch = 13;
constexpr int kLibraryNotFound = 53;
constexpr int kObjectNotSet = 91;
constexpr int kFormUnloaded = 364;
constexpr int kInvalidPropertyValue = 380;
constexpr int kFunctionNotFound = 453;
constexpr int kConfiguration = 2002;
} // namespace ErrorNumber

/// A failure inside the program. Thrown where it happens, caught by exactly one failure path per routine.
class RuntimeError final : public std::exception
{
public:
    RuntimeError(int number, const QString& description)
        : m_number(number)
        , m_description(description)
        , m_what(description.toUtf8())
    {
    }

    [[nodiscard]] int Number() const { return m_number; }
    [[nodiscard]] const QString& Description() const { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

private:
    int m_number = 0;
    QString m_description;
    QByteArray m_what;
};
