#include "Brevanto/BrevantoConstants.h"

double kScreenWidth = 0;
double kScreenHeight = 0;
