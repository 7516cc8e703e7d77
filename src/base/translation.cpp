#include "base/translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

bool install(const QString &file, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    return translator->load(file, folder) &&
           QCoreApplication::installTranslator(translator.release());  // the application owns it
}

}  // namespace

void installTranslations()
{
    const QString folder = QCoreApplication::applicationDirPath() + u"/../Resources/Translations"_s;
    QStringList languages = QLocale::system().uiLanguages();
    languages.append(u"en"_s);
    for (QString language : languages) {
        language.replace(u'-', u'_');
        // The texts in the source are English but for the names of keys on another system.
        if (language == u"C" || language.section(u'_', 0, 0) == u"en")
            language = u"en"_s;
        if (install(u"snapworkbench_"_s + language, folder)) {
            // The toolkit's own texts, where they are installed.
            install(u"qtbase_"_s + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
            return;
        }
    }
}
