#include "config/applicationrecord.h"

#include "config/licensing.h"
#include "config/profile.h"

#include <QCoreApplication>
#include <QFile>

#include <iterator>

wchar_t g_GUID[RecordTextCapacity];
wchar_t g_AppCompany[RecordTextCapacity];
wchar_t g_AppName[RecordTextCapacity];
wchar_t g_Logo[RecordTextCapacity];
wchar_t g_Ver[RecordTextCapacity];
wchar_t g_URL[RecordTextCapacity];
wchar_t g_BuyURL[RecordTextCapacity];
wchar_t g_Email[RecordTextCapacity];

QString g_ResourceFileName;

int g_LicenseStatus = 0;
QString g_LicenseName;
int g_DayLeft = 0;
int g_DayCount = 0;

void ReadProfile()
{
    GwProfilePath(QFile::encodeName(QCoreApplication::applicationDirPath() + u'/').constData());
    GwProfileGetW(L"appid", g_GUID, std::size(g_GUID));
    GwProfileGetW(L"company", g_AppCompany, std::size(g_AppCompany));
    GwProfileGetW(L"app", g_AppName, std::size(g_AppName));
    GwProfileGetW(L"logo", g_Logo, std::size(g_Logo));
    GwVerGetW(g_AppName, g_Ver, std::size(g_Ver));
    GwProfileGetW(L"url", g_URL, std::size(g_URL));
    GwProfileGetW(L"buyurl", g_BuyURL, std::size(g_BuyURL));
    GwProfileGetW(L"support_email", g_Email, std::size(g_Email));
}

void ProcessLicense()
{
    const Licensing::Status status = Licensing::status();
    g_LicenseStatus = status.registered ? 1 : 0;
    g_LicenseName = status.name;
    g_DayLeft = status.daysLeft;
    g_DayCount = status.dayCount;
}
