// Formats that are told apart but whose layouts are not published.
#include <fstream>

#include "kem.h"

int PrnType::ReadHPDTAProfile(std::ifstream&) { return 0; }
int PrnType::ReadCaryPrn(std::ifstream&) { return 0; }
int PrnType::ReadCary45(std::ifstream&, std::ifstream&) { return 0; }
