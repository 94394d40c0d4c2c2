"""The build under test: its folder, and the names that its vendor gave it."""

import os
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
BUILD = Path(os.environ.get("ORVANE_BUILD", ROOT / "build/release")).resolve()

# Names of the vendor, as "ApiHost" or "WebSite".
VENDOR = dict(re.findall(r'char k(\w+)\[\] = "([^"]*)"', (BUILD / "generated/config/VendorValues.h").read_text()))
