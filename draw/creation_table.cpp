#include "draw/creation_table.h"

stCreationTable g_stCreationTable;
