// Dialog 10065, the selection editor: template and control numbers. Also
// read by the resource compiler, so plain defines only. The rows carry the
// numbers every selection dialog of the library uses for them.
#pragma once

#define IDD_SELDESC_EDITOR          10065

#define IDC_SELEDIT_OK              1     /* "&Ok": IDOK */
#define IDC_SELEDIT_CANCEL          2     /* "&Abbruch": IDCANCEL */
#define IDC_SELEDIT_HELP            1050  /* "Hilfe..." */
#define IDC_SELEDIT_LOAD            1051  /* "Selektion laden..." */
#define IDC_SELEDIT_SAVE            1052  /* "Selektion speichern..." */

#define IDC_SELEDIT_HEAD_FIELD      1040  /* "Feld" */
#define IDC_SELEDIT_HEAD_OPERATION  1041  /* "Vergleichsoperation" */
#define IDC_SELEDIT_HEAD_VALUE      1042  /* "Feld oder Wert" */
#define IDC_SELEDIT_OR1             1043  /* "oder" */
#define IDC_SELEDIT_OR2             1044
#define IDC_SELEDIT_OR3             1045

/* Group 1: five rows joined by AND; groups 2 to 4: one row each. */
#define IDC_SELEDIT_G1R1_FIELD      1011
#define IDC_SELEDIT_G1R1_OPERATION  1012
#define IDC_SELEDIT_G1R1_VALUE      1013
#define IDC_SELEDIT_G1R2_FIELD      1015
#define IDC_SELEDIT_G1R2_OPERATION  1016
#define IDC_SELEDIT_G1R2_VALUE      1017
#define IDC_SELEDIT_G1R3_FIELD      1018
#define IDC_SELEDIT_G1R3_OPERATION  1019
#define IDC_SELEDIT_G1R3_VALUE      1020
#define IDC_SELEDIT_G1R4_FIELD      1021
#define IDC_SELEDIT_G1R4_OPERATION  1022
#define IDC_SELEDIT_G1R4_VALUE      1023
#define IDC_SELEDIT_G1R5_FIELD      1024
#define IDC_SELEDIT_G1R5_OPERATION  1025
#define IDC_SELEDIT_G1R5_VALUE      1026
#define IDC_SELEDIT_G2_FIELD        114
#define IDC_SELEDIT_G2_OPERATION    115
#define IDC_SELEDIT_G2_VALUE        1035
#define IDC_SELEDIT_G3_FIELD        1027
#define IDC_SELEDIT_G3_OPERATION    1028
#define IDC_SELEDIT_G3_VALUE        1029
#define IDC_SELEDIT_G4_FIELD        1030
#define IDC_SELEDIT_G4_OPERATION    1031
#define IDC_SELEDIT_G4_VALUE        1032
