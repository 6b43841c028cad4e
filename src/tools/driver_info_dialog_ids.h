// Dialog 10061, what the driver of a connection tells about itself:
// template and control numbers. Also read by the resource compiler, so
// plain defines only. Each value field follows its label.
#pragma once

#define IDD_DRIVER_INFO                  10061

#define IDC_DRIVER_INFO_CLOSE            2     /* "Schließen": IDCANCEL */
#define IDC_DRIVER_INFO_FIRST_LABEL      1100  /* label n is 1100 + 2n, its field 1101 + 2n */
#define IDC_DRIVER_INFO_FIRST_FIELD      1101
