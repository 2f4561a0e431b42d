import os
import shutil

import pytest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))


@pytest.fixture
def news(tmp_path):
    """A copy of the bundled example EDL."""
    path = tmp_path / "news.edl"
    shutil.copy(os.path.join(ROOT, "examples", "evening_news.edl"), path)
    return str(path)
