"""The test run's own modules, for the tests of them."""

from __future__ import annotations

import sys
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(REPO / "scripts" / "lib"), str(REPO / "scripts")]
