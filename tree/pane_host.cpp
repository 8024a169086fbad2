#include "tree/pane_host.h"

#include "tree/mytreewidget.h"

namespace {

class LoneHost final : public PaneHost
{
  public:
    void attach(MyTreeWidget& pane) override { pane_ = &pane; }
    void attach(FenCheck& /*dialog*/) override {}
    void choose_algorithm(QCryptographicHash::Algorithm algorithm) override
    {
        pane_->changeHeaderMD5(algorithm == QCryptographicHash::Md5);
        pane_->changeHeaderSHA1(algorithm != QCryptographicHash::Md5);
    }
    void release_algorithm() override {}
    void restart_timer() override {}
    void show_status(const QString& /*text*/) override {}
    bool is_hashing() const override { return pane_->job_running(); }
    void pane_released() override {}
    void finish_marking() override {}

  private:
    MyTreeWidget* pane_ = nullptr;
};

} // namespace

PaneHost::~PaneHost() = default;

std::unique_ptr<PaneHost> make_lone_host()
{
    return std::make_unique<LoneHost>();
}
