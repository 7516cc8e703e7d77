#pragma once

#include <QString>

#include <cstddef>

/// What the program knows about itself. The values are written during start-up and only read
/// afterwards.
///
/// A text that is missing in the profile stays empty; a text that is too long is cut.
inline constexpr std::size_t RecordTextCapacity = 256;

extern wchar_t g_GUID[RecordTextCapacity];        ///< identity of the product
extern wchar_t g_AppCompany[RecordTextCapacity];  ///< maker
/// Names the data folder and is the title of every message.
extern wchar_t g_AppName[RecordTextCapacity];
extern wchar_t g_Logo[RecordTextCapacity];
extern wchar_t g_Ver[RecordTextCapacity];
extern wchar_t g_URL[RecordTextCapacity];     ///< home page
extern wchar_t g_BuyURL[RecordTextCapacity];  ///< where to buy
extern wchar_t g_Email[RecordTextCapacity];   ///< support

extern QString g_ResourceFileName;  ///< path of the user's file; set by ProcessResourceFile

extern int g_LicenseStatus;  ///< 1 when registered, else 0
extern QString g_LicenseName;
extern int g_DayLeft;
extern int g_DayCount;

/// Reads the text fields from the profile files beside the executable.
void ReadProfile();

/// Asks for the licence status and fills the four licence fields.
void ProcessLicense();
