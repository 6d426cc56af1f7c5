#include "app/QuilletApp.h"

/// The one application object, constructed before the framework's entry point runs and found by it.
CQuilletApp theApp;
