// Stands before the compiler's, which <windows.h> includes for a few instructions that nothing here
// uses: it declares thousands, and a third of the time that a source takes would go into reading
// them.
#pragma once
