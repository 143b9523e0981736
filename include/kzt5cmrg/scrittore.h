#pragma once

// The report writer: the one way out of everything a run has to say. A host derives from it and
// decides where the report goes. Columns of the tables line up when the rules below are kept.

#include "kzt5cmrg/record.h"

class CFileOutTmp {
 public:
  virtual ~CFileOutTmp() = default;

  // Appends a text (Windows-1252) to the line: as it stands for width 0, else left-aligned and
  // padded with blanks to `larghezza` columns.
  virtual void ScriviStringa(TTestoCr testo, int larghezza) = 0;
  // The same, then ends the line.
  virtual void ScriviStringaLn(TTestoCr testo, int larghezza) = 0;
  // Appends a number in fixed-point notation with exactly `decimali` digits after the point (no
  // point for 0), right-aligned in `larghezza` columns, unpadded for width 0.
  virtual void ScriviNumero(double valore, int larghezza, int decimali) = 0;
  // The same, then ends the line.
  virtual void ScriviNumeroLn(double valore, int larghezza, int decimali) = 0;
  // Appends n blanks.
  virtual void ScriviSpazi(int n) = 0;
  // Writes n line ends: the first ends the current line, each further one leaves an empty line.
  virtual void SaltaRiga(int n) = 0;
};
