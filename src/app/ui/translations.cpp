#include "translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace lavra::ui {

bool carregaTraducoes()
{
    auto* traducao = new QTranslator(QCoreApplication::instance());
    // "qt_pt_BR" gathers the catalogues of every Qt module.
    if (!traducao->load(QLocale(QLocale::Portuguese, QLocale::Brazil), QStringLiteral("qt"), QStringLiteral("_"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete traducao;
        return false;
    }
    return QCoreApplication::installTranslator(traducao);
}

} // namespace lavra::ui
