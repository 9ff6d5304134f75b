#pragma once

#include <QString>

#include <array>
#include <optional>

namespace lavra::report {

// The three kinds of report, one per table of saved recommendations.
enum class TipoLaudo { Formulas, Formulacao, Florestais };

struct DefinicaoLaudo {
    TipoLaudo tipo;
    QString texto;       // the value of the session's TipoLaudo
    QString tabela;      // the table of saved rows
    QString janela;      // the report window's name
    QString titulo;      // the report window's title
    int colunaInfo;      // the ordinal of Info, the technician's orientations
};

inline const std::array<DefinicaoLaudo, 3>& definicoes()
{
    static const std::array<DefinicaoLaudo, 3> all = {{
        {TipoLaudo::Formulas, QStringLiteral("Fórmulas"), QStringLiteral("RecoForm"), QStringLiteral("rptLdForml"),
         QStringLiteral("Recomendações calculadas usando fórmulas comérciais"), 43},
        {TipoLaudo::Formulacao, QStringLiteral("Formulação"), QStringLiteral("RecoFormulac"),
         QStringLiteral("rptLdFormlacao"), QStringLiteral("Recomendações calculadas usando matérias-prima"), 61},
        {TipoLaudo::Florestais, QStringLiteral("Florestais"), QStringLiteral("RecoFlorest"),
         QStringLiteral("rptLdFlorest"), QStringLiteral("Recomendações para essências florestais"), 30},
    }};
    return all;
}

inline const DefinicaoLaudo& definicao(TipoLaudo tipo)
{
    return definicoes()[static_cast<int>(tipo)];
}

// The kind named by the session's TipoLaudo text, if any.
inline std::optional<TipoLaudo> tipoPorTexto(const QString& texto)
{
    for (const DefinicaoLaudo& d : definicoes()) {
        if (d.texto == texto)
            return d.tipo;
    }
    return std::nullopt;
}

} // namespace lavra::report
