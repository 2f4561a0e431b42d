# CLI tests (filled in with the tool).
