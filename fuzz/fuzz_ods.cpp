#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dados, size_t tamanho)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(dados), qsizetype(tamanho));
    return lavra::fuzz::executa(
        [&](lavra::Pasta& pasta) { lavra::leitor::leOpenDocument(bytes, true, pasta, lavra::fuzz::opcoes()); });
}
