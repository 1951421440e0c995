import pytest


@pytest.fixture(scope="session")
def target(env):
    """The board; labgrid wants the port of a console as a number."""
    console = env.config.data["targets"]["main"]["resources"]["NetworkSerialPort"]
    console["port"] = int(console["port"])
    return env.get_target("main")
