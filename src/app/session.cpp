#include "session.h"

namespace lavra {

void Session::limpaCalculo()
{
    Dados.fill(QVariant(0), kSlots);
    CustoCalcario = 0;
    CustoBase = 0;
    CustoN = 0;
    CustoEtapa1 = 0;
    CustoEtapa2 = 0;
    CustoEtapa3 = 0;
}

} // namespace lavra
