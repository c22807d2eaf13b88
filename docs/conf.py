"""The site of the documents: scripts/docs lays its sources out and calls Sphinx with this."""

import os
import sys

sys.path.insert(0, os.environ["KEM_PYTHON"])

project = "kem"
author = copyright = "kem maintainers"
release = version = os.environ["KEM_VERSION"]

extensions = ["myst_parser", "breathe", "sphinx.ext.autodoc", "sphinx.ext.napoleon"]
html_theme = "furo"
html_show_sphinx = False
myst_heading_anchors = 3
breathe_projects = {"kem": os.environ["KEM_XML"]}
breathe_default_project = "kem"
breathe_domain_by_extension = {"h": "cpp"}
autodoc_member_order = "bysource"
autodoc_typehints = "none"
exclude_patterns = ["README.md", "**/examples", "examples"]  # the first is the index for readers of the sources
