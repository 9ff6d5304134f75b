#include "app/ui/application.h"

int main(int argc, char** argv)
{
    return lavra::ui::executa(argc, argv);
}
