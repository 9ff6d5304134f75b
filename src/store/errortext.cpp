#include "errortext.h"

#include <QRegularExpression>

namespace lavra {

namespace {

// Primary result codes of the engine; extended codes keep them in their low byte.
enum : int {
    kBusy = 5,
    kLocked = 6,
    kReadOnly = 8,
    kIoError = 10,
    kCorrupt = 11,
    kFull = 13,
    kCantOpen = 14,
    kNotADatabase = 26,
};

EngineFailure byCode(int code)
{
    if (code <= 0)
        return EngineFailure::Other;
    switch (code & 0xff) {
    case kBusy:
    case kLocked: return EngineFailure::Busy;
    case kReadOnly: return EngineFailure::ReadOnly;
    case kIoError: return EngineFailure::DiskError;
    case kCorrupt:
    case kNotADatabase: return EngineFailure::Damaged;
    case kFull: return EngineFailure::DiskFull;
    case kCantOpen: return EngineFailure::CannotOpen;
    default: return EngineFailure::Other;
    }
}

EngineFailure byText(const QString& text)
{
    const struct {
        const char* words;
        EngineFailure failure;
    } known[] = {
        {"readonly database", EngineFailure::ReadOnly},
        {"is locked", EngineFailure::Busy},
        {"file is not a database", EngineFailure::Damaged},
        {"disk image is malformed", EngineFailure::Damaged},
        {"database or disk is full", EngineFailure::DiskFull},
        {"unable to open database file", EngineFailure::CannotOpen},
        {"disk i/o error", EngineFailure::DiskError},
        {"no such table", EngineFailure::MissingTable},
    };
    const QString lower = text.toLower();
    for (const auto& entry : known) {
        if (lower.contains(QLatin1String(entry.words)))
            return entry.failure;
    }
    return EngineFailure::Other;
}

QString missingTableName(const QString& text)
{
    static const QRegularExpression table(QStringLiteral(R"(no such table:\s*(?:main\.)?(\S+))"),
                                          QRegularExpression::CaseInsensitiveOption);
    return table.match(text).captured(1);
}

} // namespace

EngineFailure engineFailure(int code, const QString& engineText)
{
    const EngineFailure coded = byCode(code);
    return coded != EngineFailure::Other ? coded : byText(engineText);
}

QString plainEngineText(int code, const QString& engineText)
{
    switch (engineFailure(code, engineText)) {
    case EngineFailure::ReadOnly:
        return QStringLiteral("O banco de dados não pode ser alterado: o arquivo Lavra.db ou a pasta onde ele está "
                              "é somente leitura. Verifique as permissões do arquivo e da pasta.");
    case EngineFailure::Busy:
        return QStringLiteral("O banco de dados está em uso por outro programa. Feche o outro programa e tente de novo.");
    case EngineFailure::Damaged:
        return QStringLiteral("O arquivo do banco de dados está danificado. Restaure uma cópia de segurança do Lavra.db.");
    case EngineFailure::DiskFull:
        return QStringLiteral("O disco está cheio. Libere espaço no disco e tente de novo.");
    case EngineFailure::CannotOpen:
        return QStringLiteral("Não foi possível abrir o arquivo do banco de dados. Verifique se o Lavra.db existe e se "
                              "a pasta onde ele está permite ler e gravar.");
    case EngineFailure::DiskError:
        return QStringLiteral("Houve um erro de leitura ou gravação no disco. Verifique o disco e tente de novo.");
    case EngineFailure::MissingTable:
        return QStringLiteral("A tabela %1 não existe no banco de dados: o arquivo está incompleto. Restaure uma cópia "
                              "de segurança do Lavra.db.")
            .arg(missingTableName(engineText));
    case EngineFailure::Other: break;
    }
    return engineText;
}

} // namespace lavra
