import pytest
from labgrid import Environment


@pytest.fixture(scope="session")
def env(request):
    """The board's environment, with the console's port as the number that labgrid wants."""
    env = Environment(request.config.getoption("lg_env"))
    console = env.config.data["targets"]["main"]["resources"]["NetworkSerialPort"]
    console["port"] = int(console["port"])
    yield env
    env.cleanup()
