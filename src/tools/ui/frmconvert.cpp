#include "app/events.h"
#include "app/session.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/widgets.h"
#include "tools/converter.h"
#include "windows.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace lavra::ui {

namespace {


// A laboratory's figure in the unit the analysis register expects, handed to it on request.
class FrmConvert final : public QWidget {
public:
    explicit FrmConvert(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Conversor de Unidades"));
        auto* grade = new QGridLayout(this);

        m_elem = new QListWidget(this);
        m_elem->setObjectName(QStringLiteral("lstElem"));
        m_para = new QComboBox(this);
        m_para->setObjectName(QStringLiteral("cboPara"));
        for (const ElementoConvertido& e : elementosConvertidos()) {
            m_elem->addItem(e.nome);
            m_para->addItem(e.nome);
        }
        m_unid = new QListWidget(this);
        m_unid->setObjectName(QStringLiteral("lstUnid"));
        semEscolhaInicial(m_unid);
        m_fator = new QListWidget(this);
        m_fator->setObjectName(QStringLiteral("lstFator"));
        m_fator->hide();
        m_val = new QLineEdit(this);
        m_val->setObjectName(QStringLiteral("txtval"));
        m_result = new QLineEdit(this);
        m_result->setObjectName(QStringLiteral("txtResult"));
        m_result->setReadOnly(true);
        m_lblUnid = new QLabel(QStringLiteral("cmolc/dm³"), this);
        m_lblUnid->setObjectName(QStringLiteral("lblUnid"));
        m_inclui = new QPushButton(QStringLiteral("Incluir"), this);
        m_inclui->setObjectName(QStringLiteral("cmdInclui"));

        grade->addWidget(rotulo(QStringLiteral("Elemento"), m_elem, this), 0, 0);
        grade->addWidget(rotulo(QStringLiteral("Expresso em"), m_unid, this), 0, 1);
        grade->addWidget(m_elem, 1, 0, 4, 1);
        grade->addWidget(m_unid, 1, 1, 4, 1);
        grade->addWidget(rotulo(QStringLiteral("Converter"), m_val, this), 0, 2, 1, 2);
        grade->addWidget(m_val, 1, 2, 1, 2);
        auto* igual = new QLabel(QStringLiteral("="), this);
        grade->addWidget(igual, 2, 2);
        grade->addWidget(m_result, 3, 2);
        grade->addWidget(m_lblUnid, 3, 3);
        grade->addWidget(rotulo(QStringLiteral("Incluir no campo"), m_inclui, this), 5, 0);
        grade->addWidget(rotulo(QStringLiteral("Para:"), m_para, this), 5, 1, Qt::AlignRight);
        grade->addWidget(m_para, 5, 2);
        grade->addWidget(m_inclui, 5, 3);
        grade->setRowStretch(4, 1);

        connect(m_elem, &QListWidget::itemSelectionChanged, this, &FrmConvert::escolheElemento);
        connect(m_unid, &QListWidget::itemSelectionChanged, this, &FrmConvert::Calcula);
        connect(m_val, &QLineEdit::textEdited, this, [this] {
            if (ValidaNumero(m_val))
                m_val->setFocus();
            else
                Calcula();
        });
        connect(m_inclui, &QPushButton::clicked, this, &FrmConvert::inclui);
        m_elem->setCurrentRow(0, QItemSelectionModel::ClearAndSelect);
        m_val->setFocus();
        resize(520, 300);
    }

private:
    void escolheElemento()
    {
        const int e = linhaEscolhida(m_elem);
        if (e < 0)
            return;
        const ElementoConvertido& elemento = elementosConvertidos()[e];
        m_para->setCurrentIndex(e);
        m_unid->clear();
        m_fator->clear();
        m_lblUnid->setText(elemento.unidadeAlvo);
        for (const UnidadeDeOrigem& origem : elemento.origens) {
            m_unid->addItem(origem.unidade);
            m_fator->addItem(textoDoFator(origem.fator));
        }
        // No unit is chosen for the user: the old result stays until one is.
        m_unid->setCurrentRow(-1);
        Calcula();
    }

    void Calcula()
    {
        const int unidade = linhaEscolhida(m_unid);
        if (unidade < 0 || unidade >= m_fator->count())
            return;
        if (const auto resultado = lavra::Calcula(m_val->text(), m_fator->item(unidade)->text()))
            m_result->setText(*resultado);
    }

    void inclui()
    {
        const QString campo = campoDaAnalise(m_para->currentIndex());
        if (!campo.isEmpty())
            emit m_session.eventos.valorParaAnalise(campo, m_result->text());
    }

    Session& m_session;
    QListWidget* m_elem = nullptr;
    QListWidget* m_unid = nullptr;
    QListWidget* m_fator = nullptr;
    QLineEdit* m_val = nullptr;
    QLineEdit* m_result = nullptr;
    QLabel* m_lblUnid = nullptr;
    QComboBox* m_para = nullptr;
    QPushButton* m_inclui = nullptr;
};

} // namespace

QWidget* criaFrmConvert(Session& session, WindowRegistry&) { return new FrmConvert(session); }

} // namespace lavra::ui
