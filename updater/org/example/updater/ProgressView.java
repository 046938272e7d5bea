package org.example.updater;

/** Shows how an installation gets on. */
interface ProgressView {
  /** {@code fraction} lies between 0 and 1, or is -1 where nobody knows. */
  void show(String text, double fraction);

  void close();

  ProgressView NONE =
      new ProgressView() {
        @Override
        public void show(String text, double fraction) {}

        @Override
        public void close() {}
      };

  /** Both of them. */
  static ProgressView of(ProgressView one, ProgressView other) {
    return new ProgressView() {
      @Override
      public void show(String text, double fraction) {
        one.show(text, fraction);
        other.show(text, fraction);
      }

      @Override
      public void close() {
        one.close();
        other.close();
      }
    };
  }
}
