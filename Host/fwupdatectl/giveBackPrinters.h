// For the end of an update in which a process was killed: it had no time to give its printer's
// interface back to the kernel's driver, and nobody could print.
#pragma once

// Gives back the interfaces of all attached printers that nobody has. Needs the platform's USB
// registry. Without a right on a printer its interface stays as it is.
void giveBackPrinters();
