#include "draw/saved_state.h"

stGLSavedState GLSavedState;
