#pragma once

#include "report/laudo.h"

#include <QWidget>

class QPainter;
class QPrinter;
class QScrollArea;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// Draws the page with the paper's top left corner at the painter's origin, at so many device
// units to the twip. The one way a report is drawn: on screen, on the printer and into a PDF.
void desenhaPagina(QPainter& painter, const report::Pagina& pagina, double unidadesPorTwip);

// Writes the page as a one-page A4 PDF; false when the file can't be written.
bool salvaPdf(const report::Pagina& pagina, const QString& caminho);

// Prints the page on a printer that the user has already chosen.
void imprimePagina(const report::Pagina& pagina, QPrinter& printer);

// The paper on screen, at a zoom.
class VistaPagina final : public QWidget {
public:
    explicit VistaPagina(const report::Pagina& pagina, QWidget* parent = nullptr);
    void setPagina(const report::Pagina& pagina);
    double zoom() const { return m_zoom; }
    void setZoom(double zoom);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double pixelsPorTwip() const;
    report::Pagina m_pagina;
    double m_zoom = 1.0;
};

// The report window: the page as a document, to print or to save as PDF. Coming into being it
// locks the close box of the chain and opens the window of the technician's orientations.
class JanelaLaudo final : public QWidget {
    Q_OBJECT

public:
    JanelaLaudo(Session& session, WindowRegistry& windows, report::Pagina pagina, QWidget* parent = nullptr);

    const report::Pagina& pagina() const { return m_pagina; }
    // Builds the page again from LaudoAnalise and LaudoCultivo; a refusal is shown and the page
    // stays as it was. True when the page was rebuilt.
    bool recarrega();

    void imprime();
    void salvaComoPdf();
    void amplia();
    void reduz();

protected:
    void showEvent(QShowEvent* event) override;

private:
    Session& m_session;
    WindowRegistry& m_windows;
    report::Pagina m_pagina;
    VistaPagina* m_vista = nullptr;
    bool m_mostrada = false;
};

} // namespace lavra::ui
